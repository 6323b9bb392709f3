#include "benchmarks/document_generator.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

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

const std::string* textOf(const Value& json, const char* key) {
  return json[key].get_if<std::string>();
}

/// The type word of a generic control, the class name of another one; empty for no control.
std::string controlWordOf(const Value& json) {
  const std::string* const className = textOf(json, "className");
  if (className == nullptr) return "";
  if (*className == "LumoControlNode") return *textOf(json["context"], "type");
  const bool isControl = className->find("Control") != std::string::npos ||
                         className->find("LumoApp") != std::string::npos;
  return isControl ? *className : "";
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

const std::map<std::string, std::size_t>& oneOfEach() {
  static const std::map<std::string, std::size_t> kinds = {{"ColorPickerControlNode", 1},
                                                           {"DatePickerControlNode", 1},
                                                           {"FileBrowserControlNode", 1},
                                                           {"LumoAppIntegratedInlineNode", 1},
                                                           {"LumoAppLineNode", 1},
                                                           {"RangeSliderControlNode", 1},
                                                           {"SpinnerControlNode", 1},
                                                           {"StateButtonControlNode", 1},
                                                           {"button", 1},
                                                           {"checkBox", 1},
                                                           {"comboBox", 1},
                                                           {"editField", 1},
                                                           {"slider", 1}};
  return kinds;
}

TEST(DocumentGenerator, MakesTheSameDocumentEachTime) {
  EXPECT_EQ(generateDocument(100'000), generateDocument(100'000));
}

// The text itself is what must not change between machines; its digest stands for it.
TEST(DocumentGenerator, MakesTheSameDocumentEverywhere) {
  std::uint64_t digest = 14695981039346656037U;
  for (const char character : generateDocument(65'536)) {
    digest = (digest ^ static_cast<unsigned char>(character)) * 1099511628211U;
  }
  EXPECT_EQ(digest, 13938080961716041853U);
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
      reference_host::json::parse(generateControls(13 * 200)));
  EXPECT_EQ(result.summary.built, 13U * 200U);
  for (const auto& error : result.errors) {
    ADD_FAILURE() << error.pointer << " " << error.builder << ": " << error.message;
  }
}

TEST(DocumentGenerator, GivesEveryKindAnEqualShare) {
  const Census census = censusOf(generateControls(13 * 50));
  std::map<std::string, std::size_t> expected = oneOfEach();
  for (auto& entry : expected) entry.second = 50;
  EXPECT_EQ(census.controls, expected);
}

TEST(DocumentGenerator, SpendsAboutFourHundredBytesOnAControl) {
  const std::string text = generateDocument(1'048'576);
  const double bytes =
      static_cast<double>(text.size()) / static_cast<double>(censusOf(text).controlCount());
  EXPECT_GT(bytes, 390);
  EXPECT_LT(bytes, 420);
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
