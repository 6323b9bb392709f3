#include "document_generator.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

#include "contract/outcome.hpp"
#include "foundation/json.hpp"
#include "gx/zero.hpp"
#include "reference_host/importer/importer.hpp"
#include "reference_host/json/parse.hpp"
#include "support/all_builders.hpp"

namespace benchmarks {
namespace {

using foundation::json::Value;

/// What a document holds: the objects that a walk offers to builders, and of these the controls by
/// the word they are recognised by.
struct Census {
  std::size_t offered = 0;
  std::size_t controls = 0;
  std::map<std::string, std::size_t> byWord;
};

void count(const Value& json, Census& census) {
  if (const auto* elements = json.get_if<Value::Array>()) {
    for (const Value& element : *elements) count(element, census);
  }
  const auto* members = json.get_if<Value::Object>();
  if (members == nullptr) return;
  ++census.offered;
  for (const contract::Kind& kind : contract::kinds()) {
    if (!contract::expectedAnswer(kind, json).claims) continue;
    ++census.controls;
    ++census.byWord[kind.word];
    return;
  }
  for (const auto& member : *members) count(member.second, census);
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

TEST(DocumentGenerator, MakesControlsThatBuildInEqualShares) {
  const Value document = reference_host::json::parse(generateControls(2600));
  const auto result = reference_host::importer::importDocument(test_support::allBuilders(),
                                                               gx::zero::Model::create(), document);
  EXPECT_EQ(result.summary.built, 2600U);
  EXPECT_TRUE(result.errors.empty());
  Census census;
  count(document, census);
  for (const contract::Kind& kind : contract::kinds()) {
    EXPECT_NEAR(static_cast<double>(census.byWord[kind.word]),
                2600.0 / static_cast<double>(contract::kinds().size()), 1)
        << kind.word;
  }
}

TEST(DocumentGenerator, MakesADocumentOfTheSizeAndMixtureAskedFor) {
  for (const std::size_t bytes : {std::size_t{65'536}, std::size_t{1'048'576}}) {
    const std::string text = generateDocument(bytes);
    const auto size = static_cast<double>(text.size());
    EXPECT_NEAR(size, static_cast<double>(bytes), 4'000);
    Census census;
    count(reference_host::json::parse(text), census);
    const auto controls = static_cast<double>(census.controls);
    EXPECT_NEAR(size / controls, 400, 30) << "bytes for a control";
    EXPECT_NEAR(controls / static_cast<double>(census.offered), 0.3, 0.005) << "are controls";
    for (const char* const piece :
         {"Gr\u00F6\u00DFe", "\U0001F4C8", "caf\\u00e9", "\\\"", "\\n", "\\\\"}) {
      EXPECT_NE(text.find(piece), std::string::npos) << piece;
    }
    EXPECT_EQ(text.find('\n'), std::string::npos);
  }
}

}  // namespace
}  // namespace benchmarks
