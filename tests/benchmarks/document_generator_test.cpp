#include "document_generator.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "contract/outcome.hpp"
#include "foundation/json.hpp"
#include "gx/zero.hpp"
#include "reference_host/importer/importer.hpp"
#include "reference_host/json/parse.hpp"
#include "support/all_builders.hpp"

namespace benchmarks {
namespace {

using foundation::json::Value;

/// What a document holds: objects outside and inside of controls, controls by the word they are
/// recognised by.
struct Census {
  std::size_t offered = 0;
  std::map<std::string, std::size_t> controls;

  std::size_t controlCount() const {
    std::size_t count = 0;
    for (const auto& entry : controls) count += entry.second;
    return count;
  }
};

/// The word of the kind that claims an object by contract; empty for an object of nobody's.
std::string controlWordOf(const Value& json) {
  for (const contract::Kind& kind : contract::kinds()) {
    if (contract::expectedAnswer(kind, json).claims) return kind.word;
  }
  return "";
}

void count(const Value& json, Census& census) {
  if (const auto* elements = json.get_if<Value::Array>()) {
    for (const Value& element : *elements) count(element, census);
  }
  const auto* members = json.get_if<Value::Object>();
  if (members == nullptr) return;
  ++census.offered;
  const std::string word = controlWordOf(json);
  if (!word.empty()) {
    ++census.controls[word];
    return;
  }
  for (const auto& member : *members) count(member.second, census);
}

Census censusOf(const std::string& text) {
  Census census;
  count(reference_host::json::parse(text), census);
  return census;
}

TEST(DocumentGenerator, MakesTheSameDocumentEachTime) {
  EXPECT_EQ(generateDocument(100'000), generateDocument(100'000));
}

// The text itself is what must not change between machines; its digest stands for it.
TEST(DocumentGenerator, MakesTheSameTextEverywhere) {
  DocumentGenerator generator;
  std::string text;
  for (const char* builder : {"ComboboxBuilderImpl", "EditFieldBuilderImpl",
                              "SliderNodeBuilderImpl", "LumoTaskHeaderBuilderImpl"}) {
    for (int round = 0; round < 50; ++round) text += generator.control(contract::kindOf(builder));
  }
  std::uint64_t digest = 14695981039346656037U;
  for (const char character : text) {
    digest = (digest ^ static_cast<unsigned char>(character)) * 1099511628211U;
  }
  EXPECT_EQ(digest, 15366249347268427615U);
}

TEST(DocumentGenerator, KeepsToTheSize) {
  for (const std::size_t bytes : {std::size_t{65'536}, std::size_t{1'048'576}}) {
    const std::size_t size = generateDocument(bytes).size();
    EXPECT_NEAR(static_cast<double>(size), static_cast<double>(bytes), 4'000);
  }
}

TEST(DocumentGenerator, MakesControlsThatBuild) {
  const auto result = reference_host::importer::importDocument(
      test_support::allBuilders(), gx::zero::Model::create(),
      reference_host::json::parse(generateControls(2600)));
  EXPECT_EQ(result.summary.built, 2600U);
  for (const auto& error : result.errors) {
    ADD_FAILURE() << error.pointer << " " << error.builder << ": " << error.message;
  }
}

TEST(DocumentGenerator, GivesEveryKindAnEqualShare) {
  const Census census = censusOf(generateControls(measuredKinds().size() * 50));
  std::map<std::string, std::size_t> expected;
  for (const contract::Kind& kind : contract::kinds()) expected[kind.word] = 50;
  EXPECT_EQ(census.controls, expected);
}

TEST(DocumentGenerator, SpendsAboutFourHundredBytesOnAControl) {
  const std::string text = generateDocument(1'048'576);
  const double bytes =
      static_cast<double>(text.size()) / static_cast<double>(censusOf(text).controlCount());
  EXPECT_GT(bytes, 370);
  EXPECT_LT(bytes, 430);
}

TEST(DocumentGenerator, OffersSevenStrangersInTenObjects) {
  const Census census = censusOf(generateDocument(1'048'576));
  const double controls =
      static_cast<double>(census.controlCount()) / static_cast<double>(census.offered);
  EXPECT_NEAR(controls, 0.3, 0.005);
}

TEST(DocumentGenerator, WritesSomeTextsThatAreNotAsciiAndSomeEscapes) {
  const std::string text = generateDocument(65'536);
  for (const std::string_view piece : {"Gr\xC3\xB6\xC3\x9F"
                                       "e",
                                       "\xF0\x9F\x93\x88", "caf\\u00e9", "\\\"", "\\n", "\\\\"}) {
    EXPECT_NE(text.find(piece), std::string::npos) << piece;
  }
  EXPECT_EQ(text.find('\n'), std::string::npos);
}

}  // namespace
}  // namespace benchmarks
