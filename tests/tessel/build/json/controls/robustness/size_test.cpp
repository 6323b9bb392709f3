#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "document/gxzero.hpp"
#include "foundation/json.hpp"
#include "gx/zero.hpp"
#include "reference_host/export/export.hpp"
#include "reference_host/importer/importer.hpp"
#include "reference_host/json/parse.hpp"
#include "reference_host/logging/log_capture.hpp"
#include "sample_builds.hpp"
#include "support/all_builders.hpp"
#include "support/allocation_count.hpp"
#include "support/scale.hpp"

/// Large and deep input: what a step asks of memory grows with the input and no faster. (A step
/// that looked at everything before it for each item would not come to an end here.)
namespace tessel::build::json::controls {
namespace {

using document::gxzero::Node;
using foundation::json::Value;
using gx::zero::Model;
using reference_host::importer::importDocument;
using reference_host::importer::ImportResult;
using test_support::AllocationTally;
using test_support::kScale;
using test_support::tallyOf;

constexpr std::size_t kMany = 1'000'000 / kScale;
constexpr std::size_t kFew = kMany / 100;
constexpr std::size_t kLongText = 200'000'000 / kScale;
constexpr std::size_t kDeep = 1'000'000 / kScale;

/// The memory of each step with a document, from its text to the export of what was built.
using Tallies = std::map<std::string, AllocationTally>;

Tallies measure(std::string text, std::size_t built) {
  Tallies tallies;
  std::optional<Value> document;
  tallies["parse"] = tallyOf([&] { document = reference_host::json::parse(text); });
  std::string().swap(text);
  std::optional<Value> copy;
  tallies["copy"] = tallyOf([&] { copy = *document; });
  tallies["compare"] = tallyOf([&] { EXPECT_TRUE(*copy == *document); });
  copy.reset();
  tallies["print"] = tallyOf([&] { pretty_print(*document); });
  const Model model = Model::create();
  std::optional<ImportResult> result;
  tallies["import"] =
      tallyOf([&] { result = importDocument(test_support::allBuilders(), model, *document); });
  EXPECT_EQ(result->summary.built, built);
  EXPECT_TRUE(result->errors.empty());
  document.reset();
  tallies["export"] = tallyOf([&] {
    for (const Node& node : result->nodes) reference_host::exporting::toJson(node);
  });
  return tallies;
}

/// Holds a hundred times the items to a hundred times the memory. Blocks that double may be almost
/// as large again as what they hold, for one number of items and not for the other.
void expectLinear(const Tallies& few, const Tallies& many) {
  constexpr std::size_t kFactor = kMany / kFew;
  constexpr std::size_t kOnce = 100;  // whatever the number of items
  for (const auto& [step, tally] : many) {
    SCOPED_TRACE(step);
    EXPECT_LE(tally.count, kFactor * (few.at(step).count + kOnce));
    EXPECT_LE(tally.bytes, kFactor * 2 * (few.at(step).bytes + kOnce * 100));
  }
}

class SizeTest : public testing::Test {
 protected:
  // Makes what the process makes once.
  SizeTest() { measure(R"({"className":"button","text":"x"})", 1); }
};

std::string listOf(std::size_t items, const std::string& item) {
  std::string text = "[";
  for (std::size_t index = 0; index < items; ++index) text += (index == 0 ? "" : ",") + item;
  return text + "]";
}

/// Members with names of one length, in no order.
std::string membersOf(std::size_t members) {
  std::string text = "{";
  for (std::size_t index = 0; index < members; ++index) {
    // A multiplier prime to the range visits every number once.
    const std::size_t number = index * 7'919 % members + 10'000'000;
    text += (index == 0 ? "\"m" : ",\"m") + std::to_string(number) + "\":1";
  }
  return text + "}";
}

std::string control(const std::string& type, const std::string& data) {
  return R"({"className":"LumoControlNode","context":{"type":")" + type + R"(","data":)" + data +
         "}}";
}

std::string comboBox(std::size_t items) {
  return control("comboBox", R"({"items":)" + listOf(items, R"({"label":"one","value":"1"})") +
                                 R"(,"itemLabels":)" + listOf(items, R"("one")") + "}");
}
std::string taskHeader(std::size_t children) {
  return R"({"className":"LumoAppLineNode","children":)" +
         listOf(children, R"({"className":"LumoAppIntegratedInlineNode"})") + "}";
}
std::string buttons(std::size_t controls) {
  return listOf(controls, R"({"className":"button"})");
}
std::string oneName(std::size_t members) {
  std::string text = R"({"className":"button")";
  for (std::size_t index = 0; index < members; ++index) text += R"(,"text":"x")";
  return text + "}";
}
std::string label(std::size_t length) {
  return control("button", R"({"text":")" + std::string(length, 'x') + R"("})");
}

TEST_F(SizeTest, AMillionItemsAndATextOfTwoHundredMegabytes) {
  const struct {
    const char* description;
    std::string (*document)(std::size_t);
    std::size_t items;
    bool eachIsBuilt;
  } rows[] = {{"the items of one combo box", comboBox, kMany, false},
              {"the children of one task header", taskHeader, kMany, false},
              {"controls in one document", buttons, kMany, true},
              {"members of one name", oneName, kMany, false},
              {"a text", label, kLongText, false}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.description);
    const auto measured = [&row](std::size_t items) {
      return measure(row.document(items), row.eachIsBuilt ? items : 1);
    };
    expectLinear(measured(row.items / 100), measured(row.items));
  }
}

TEST_F(SizeTest, AMillionMembersThatNobodyReads) {
  const auto document = [](std::size_t members) { return control("button", membersOf(members)); };
  const Tallies few = measure(document(kFew), 1);
  const Tallies many = measure(document(kMany), 1);
  expectLinear(few, many);
  // What is not read costs nothing: neither import nor export knows of the members.
  EXPECT_EQ(few.at("import").count, many.at("import").count);
  EXPECT_EQ(few.at("export").count, many.at("export").count);
}

/// A value inside a million arrays.
Value deep() {
  Value value("innermost");
  for (std::size_t level = 0; level < kDeep; ++level) {
    Value::Array elements;
    elements.push_back(std::move(value));
    value = Value(std::move(elements));
  }
  return value;
}

TEST_F(SizeTest, EveryKindTakesAMillionLevelsWhereNobodyLooks) {
  Value unknown = deep();
  for (const SampleBuild& sample : successfulSamples()) {
    SCOPED_TRACE(sample.name);
    Value json = sample.json;
    json["unknown"] = std::move(unknown);
    EXPECT_TRUE(sample.builder.canBuild(json));
    const Model model = Model::create();
    sample.builder.build(model, json);
    EXPECT_TRUE(contract::areSame(contract::rootsOf(model), sample.built.roots));
    unknown = std::move(json["unknown"]);
  }
  EXPECT_TRUE(unknown == deep());
}

TEST_F(SizeTest, AMillionLevelsWhereATextIsReadAreTheConversionError) {
  const auto& builder = test_support::builderOf("ButtonBuilderImpl");
  Value json = Value::Object{{"text", deep()}};
  std::string error;
  const reference_host::logging::LogCapture capture;  // the whole value is a record
  try {
    builder.build(Model::create(), json);
  } catch (const std::runtime_error& thrown) {
    error = thrown.what();
  }
  EXPECT_EQ(error, "invalid conversion: array to string");
  ASSERT_GT(capture.records().size(), 1U);
  EXPECT_TRUE(capture.records()[1].text == pretty_print(json));

  json["className"] = deep();
  EXPECT_THROW(builder.canBuild(json), std::runtime_error);
}

}  // namespace
}  // namespace tessel::build::json::controls
