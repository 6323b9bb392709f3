#include "controls/control_builders.hpp"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "support/build_outcome.hpp"
#include "support/json.hpp"
#include "support/records.hpp"

namespace tessel::build::json::controls {
namespace {

using foundation::json::Value;
using test_support::buildWith;
using test_support::json;
using test_support::Outcome;
using test_support::Records;
using test_support::recordsOf;

TEST(ButtonBuilder, RecognitionWritesItsOwnRecordFirst) {
  const ButtonBuilderImpl builder;
  struct Row {
    const char* description;
    Value value;
    bool expected;
    Records records;
  };
  const Row rows[] = {
      {"generic control of type button",
       json(R"({"className":"LumoControlNode","context":{"type":"button"}})"),
       true,
       {"Checking if can build Button"}},
      {"class name button",
       json(R"({"className":"button"})"),
       true,
       {"Checking if can build Button"}},
      {"something else",
       json(R"({"className":"ParagraphNode"})"),
       false,
       {"Checking if can build Button"}},
      {"not an object",
       json("[1]"),
       false,
       {"Checking if can build Button", "Incoming JSON was not an Object"}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.description);
    bool answer = !row.expected;
    EXPECT_EQ(recordsOf([&] { answer = builder.canBuild(row.value); }), row.records);
    EXPECT_EQ(answer, row.expected);
  }
}

TEST(ButtonBuilder, RecognitionErrorsComeAfterTheRecord) {
  const ButtonBuilderImpl builder;
  const Value value = json(R"({"className":7})");
  EXPECT_EQ(recordsOf([&] { EXPECT_THROW(builder.canBuild(value), std::runtime_error); }),
            Records{"Checking if can build Button"});
}

const char* const kStart = "Starting to build a Button using the incoming JSON below";

struct BuildRow {
  const char* description;
  Value value;
  std::string built;     // the properties of the node after its class
  std::string error;     // empty when the build succeeds
  Records fieldRecords;  // after the start text and the JSON
};

std::string buttonNode(const std::string& properties) {
  return R"({"class":"document::gxzero::ButtonNode")" + properties + "}";
}

const char* const kEmptyPosition =
    R"("position":{"class":"document::gxzero::LumoControlPosition"})";
const char* const kEmptyData =
    R"("buttonData":{"class":"lumocode::contentmodel::gxzero::ButtonData"})";

std::string emptyPositionAnd(const std::string& dataProperties) {
  return std::string(",") + kEmptyPosition +
         R"(,"buttonData":{"class":"lumocode::contentmodel::gxzero::ButtonData")" + dataProperties +
         "}";
}

const Records kExecutionModelRecords = {"Found the executionModel property",
                                        "Set the executionModel property"};
const Records kLabelRecords = {"Found the label property", "Set the label property"};
const Records kCodeRecords = {"Found the code property", "Set the code property"};

const std::vector<BuildRow>& buildRows() {
  static const std::string kEmpty = emptyPositionAnd("");
  static const std::vector<BuildRow> rows = {
      {"every key",
       json(R"({"className":"LumoControlNode","controlId":"b1","startColumn":3,"endColumn":12,
                "text":"run","context":{"type":"button",
                "data":{"executionModel":"section","text":"Run"}}})"),
       R"(,"id":"b1","position":{"class":"document::gxzero::LumoControlPosition","startColumn":3,"endColumn":12})"
       R"(,"buttonData":{"class":"lumocode::contentmodel::gxzero::ButtonData","label":"Run","code":"run","executionModel":"section"})",
       "",
       {"Found the executionModel property", "Set the executionModel property",
        "Found the label property", "Set the label property", "Found the code property",
        "Set the code property"}},
      {"only what recognition needs: node, position and record are there, nothing is set",
       json(R"({"className":"LumoControlNode","context":{"type":"button"}})"),
       kEmpty,
       "",
       {}},
      {"recognised by the bare class name", json(R"({"className":"button"})"), kEmpty, "", {}},
      {"code alone: top-level text without a label",
       json(R"({"text":"x = 1","context":{"data":{}}})"), emptyPositionAnd(R"(,"code":"x = 1")"),
       "", kCodeRecords},
      {"code is read without a context too", json(R"({"text":"x = 1"})"),
       emptyPositionAnd(R"(,"code":"x = 1")"), "", kCodeRecords},
      {"label alone", json(R"({"context":{"data":{"text":"Run"}}})"),
       emptyPositionAnd(R"(,"label":"Run")"), "", kLabelRecords},
      {"execution model alone", json(R"({"context":{"data":{"executionModel":"all"}}})"),
       emptyPositionAnd(R"(,"executionModel":"all")"), "", kExecutionModelRecords},
      {"no key is named label or code",
       json(R"({"label":"a","code":"b","context":{"data":{"label":"c","code":"d"}}})"),
       kEmpty,
       "",
       {}},
      {"empty texts are set", json(R"({"controlId":"","context":{"data":{"text":""}}})"),
       R"(,"id":"",)" + std::string(kEmptyPosition) +
           R"(,"buttonData":{"class":"lumocode::contentmodel::gxzero::ButtonData","label":""})",
       "", kLabelRecords},
      {"non-ASCII text",
       json(R"({"controlId":"größe","context":{"data":{"text":"Los \uD83D\uDE80"}}})"),
       R"(,"id":"größe",)" + std::string(kEmptyPosition) +
           ",\"buttonData\":{\"class\":\"lumocode::contentmodel::gxzero::ButtonData\",\"label\":"
           "\"Los "
           "\xF0\x9F\x9A\x80\"}",
       "", kLabelRecords},

      {"a context that is text has no data", json(R"({"context":"here"})"), kEmpty, "", {}},
      {"a context that is null has no data", json(R"({"context":null})"), kEmpty, "", {}},
      {"data that is an array has no fields",
       json(R"({"context":{"data":["text"]}})"),
       kEmpty,
       "",
       {}},
      {"data that is null has no fields", json(R"({"context":{"data":null}})"), kEmpty, "", {}},

      {"controlId of another type is ignored", json(R"({"controlId":42})"), kEmpty, "", {}},
      {"controlId true is ignored", json(R"({"controlId":true})"), kEmpty, "", {}},
      {"controlId null is ignored", json(R"({"controlId":null})"), kEmpty, "", {}},
      {"controlId object is ignored", json(R"({"controlId":{}})"), kEmpty, "", {}},
      {"controlId array is ignored", json(R"({"controlId":["b1"]})"), kEmpty, "", {}},

      {"startColumn that is text fails before the id is read",
       json(R"({"startColumn":"3","controlId":"b1"})"),
       std::string(",") + kEmptyPosition,
       "invalid conversion: string to double",
       {}},
      {"endColumn that is null fails; the start column stays set",
       json(R"({"startColumn":2,"endColumn":null})"),
       R"(,"position":{"class":"document::gxzero::LumoControlPosition","startColumn":2})",
       "invalid conversion: null to double",
       {}},
      {"an integer alternative is no double",
       Value(Value::Object{{"startColumn", Value(std::int64_t{3})}}),
       std::string(",") + kEmptyPosition,
       "invalid conversion: int64 to double",
       {}},
      {"an unsigned integer alternative is no double",
       Value(Value::Object{{"endColumn", Value(std::uint64_t{3})}}),
       std::string(",") + kEmptyPosition,
       "invalid conversion: uint64 to double",
       {}},
      {"a float is no double",
       Value(Value::Object{{"startColumn", Value(3.0F)}}),
       std::string(",") + kEmptyPosition,
       "invalid conversion: float to double",
       {}},
      {"execution model of type number: nothing of the record is set",
       json(
           R"({"controlId":"b1","text":"x","context":{"data":{"executionModel":1,"text":"Run"}}})"),
       R"(,"id":"b1",)" + std::string(kEmptyPosition) + "," + kEmptyData,
       "invalid conversion: double to string",
       {"Found the executionModel property"}},
      {"numeric label: the execution model stays",
       json(R"({"text":"x","context":{"data":{"executionModel":"all","text":5}}})"),
       emptyPositionAnd(R"(,"executionModel":"all")"),
       "invalid conversion: double to string",
       {"Found the executionModel property", "Set the executionModel property",
        "Found the label property"}},
      {"code that is an object: execution model and label stay",
       json(R"({"text":{},"context":{"data":{"executionModel":"all","text":"Run"}}})"),
       emptyPositionAnd(R"(,"label":"Run","executionModel":"all")"),
       "invalid conversion: object to string",
       {"Found the executionModel property", "Set the executionModel property",
        "Found the label property", "Set the label property", "Found the code property"}},
  };
  return rows;
}

TEST(ButtonBuilder, BuildsEveryRow) {
  const ButtonBuilderImpl builder;
  for (const BuildRow& row : buildRows()) {
    SCOPED_TRACE(row.description);
    Outcome expected;
    expected.error = row.error;
    expected.node = row.error.empty() ? buttonNode(row.built) : "";
    expected.roots = "[" + buttonNode(row.built) + "]";
    expected.records = {kStart, foundation::json::pretty_print(row.value)};
    expected.records.insert(expected.records.end(), row.fieldRecords.begin(),
                            row.fieldRecords.end());
    EXPECT_EQ(buildWith(builder, row.value), expected);
  }
}

TEST(ButtonBuilder, CreatesNodePositionAndRecordInThisOrder) {
  const gx::zero::Model model = gx::zero::Model::create();
  ButtonBuilderImpl().build(model, json(R"({"className":"button"})"));
  std::vector<std::u16string> classes;
  for (const auto& element : model.get()->getElements()) {
    classes.push_back(element->metaClass().get()->getQualifiedName());
  }
  EXPECT_EQ(classes, (std::vector<std::u16string>{u"document::gxzero::ButtonNode",
                                                  u"document::gxzero::LumoControlPosition",
                                                  u"lumocode::contentmodel::gxzero::ButtonData"}));
}

TEST(ButtonBuilder, TheModelKeepsTheNodeWhenTheCallerDropsIt) {
  const gx::zero::Model model = gx::zero::Model::create();
  const ButtonBuilderImpl builder;
  builder.build(model, json(R"({"className":"button","controlId":"first"})"));
  builder.build(model, json(R"({"className":"button","controlId":"second"})"));
  EXPECT_EQ(model.get()->getRoots().size(), 2U);
  EXPECT_EQ(model.get()->getHeldElementCount(), 0U);
}

}  // namespace
}  // namespace tessel::build::json::controls
