#include "reference_host/diagnosis/document_check.hpp"

#include <gmock/gmock.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "contract/kinds.hpp"
#include "support/all_builders.hpp"
#include "support/dial_builder.hpp"
#include "support/json.hpp"
#include "words.hpp"

namespace reference_host::diagnosis {

namespace {

using foundation::json::Value;
using importer::NamedBuilder;
using test_support::json;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Field;

const std::vector<NamedBuilder>& builders() {
  static const std::vector<NamedBuilder> all = [] {
    std::vector<NamedBuilder> builders = test_support::allBuilders();
    // Its name suggests none of its words.
    builders.emplace_back("Knob", std::make_shared<const test_support::DialBuilder>());
    return builders;
  }();
  return all;
}

/// Every problem as "code member: hint".
std::vector<std::string> said(const std::string& document, Warnings warnings = Warnings::kYes,
                              std::vector<std::string> words = tessel_tool::knownWords()) {
  const Knowledge knowledge(builders(), std::move(words));
  std::vector<std::string> lines;
  for (const Problem& problem :
       checkDocument(knowledge, json(document), document, warnings).problems) {
    std::string line = codeName(problem.code) + (' ' + problem.member.value_or("none"));
    if (problem.hint) line += ": " + *problem.hint;
    lines.push_back(line);
  }
  return lines;
}

/// The words of some of the kinds, as a hint lists them.
std::string listOf(bool (*belongs)(const contract::Kind&)) {
  std::string list;
  for (const contract::Kind& kind : contract::kinds()) {
    if (belongs(kind)) list += (list.empty() ? "\"" : ", \"") + kind.word + '"';
  }
  return list;
}

TEST(DocumentCheckTest, Hints) {
  const std::string types = listOf(contract::isGeneric);
  const std::string ownClasses =
      listOf([](const contract::Kind& kind) { return kind.rule != contract::Rule::kTypeWord; });
  const std::string otherClasses =
      listOf([](const contract::Kind& kind) { return !contract::isGeneric(kind); });
  ASSERT_EQ(types.substr(0, 10), R"("button", )");
  const std::string otherTypes = types.substr(10);
  const struct {
    const char* document;
    std::vector<std::string> said;
  } rows[] = {
      {R"({"className": "TextNode", "anything": [1]})", {}},
      {R"({"className": "FileBrowserControlNode", "context": {"browserType": "file"}})",
       {R"(missing-member /context/data/browserType: move "browserType" into "context"."data")",
        R"(unknown-member /context/browserType: "browserType" belongs in "context"."data")"}},
      {R"({"className": "FileBrowserControlNode"})",
       {R"(missing-member /context/data/browserType: )"
        R"(add "browserType": "..." in "context"."data")"}},
      {R"({"className": "FileBrowserControlNode", "data": {"browserType": "file"}})",
       {R"(missing-member /context/data/browserType: move "data" into "context")",
        R"(unknown-member /data: "data" belongs in "context")"}},
      {R"({"className": "ColorPickerControlNode", "context": {"data": {"linkedVariable": "a"}}})",
       {R"(missing-member /context/data/colorFormat: add "colorFormat": "...")",
        R"(unknown-member /context/data/linkedVariable: what can be added here: "colorFormat", )"
        R"("defaultValue", "executionModel", "text")"}},
      {R"({"className": "FileBrowserControlNode", "context": "file"})",
       {"wrong-type /context: write an object: {\"data\": ...}"}},
      {R"({"className": "SpinnerControlNode", "text": "a"})",
       {R"(ignored-member /text: it is read only where there is "context"."data")"}},
      {R"({"className": "SpinnerControlNode", "context": {"data": 1}})",
       {"ignored-member /context/data: write an object: {...}"}},
      {R"({"className": "LumoControlNode", "context": {"type": "editField",
           "data": {"defaultValueLinkedVariable": "a"}}})",
       {R"(ignored-member /context/data/defaultValueLinkedVariable: )"
        R"(it is read only where there is "context"."data"."defaultValue")"}},
      {R"({"className": "LumoControlNode", "context": {"type": "editField", "data":
           {"valueType": "Double", "defaultValue": "2", "defaultValueLinkedVariable": "a"}}})",
       {"ignored-member /context/data/defaultValue: write it without quotes: 2"}},
      {R"({"className": "LumoControlNode", "context": {"type": "spinner"}})",
       {R"(unknown-type /context/type: write "className": "SpinnerControlNode" instead of )"
        R"("LumoControlNode", and take out "type")"}},
      {R"({"className": "SpinnerControlNode", "context": {"type": "spinner", "data": {}}})",
       {"unknown-member /context/type: take it out"}},
      {R"({"className": "SliderControlNode"})",
       {R"(unknown-class /className: write "className": "LumoControlNode" with "type": )"
        R"("slider" in "context")"}},
      {R"({"className": "Spinner"})",
       {R"(unknown-class /className: write "className": "SpinnerControlNode")"}},
      {R"({"className": "Thing", "controlId": "a"})",
       {"unknown-class /className: known class names: \"LumoControlNode\", " + ownClasses}},
      {R"({"className": "LumoControlNode", "context": {"type": "dial"}})",
       {"unknown-type /context/type: known types: " + types +
        "; other kinds have a class name of their own: " + otherClasses}},
      {R"({"className": "LumoControlNode", "context": {"type": 7}})",
       {"cannot-tell /context/type: write one of " + types}},
      {R"([{"classname": "Dial", "controlId": "a"}, {"class": "Spinner", "controlId": "a"}])",
       {R"(unknown-class /0: write "className" instead of "classname")",
        R"(unknown-class /1: write "className" instead of "class")"}},
      {R"({"controlId": "a"})",
       {R"(unknown-class : add "className": "LumoControlNode", or another class name: )" +
        ownClasses}},
      {R"([{"className": "LumoControlNode", "Context": {}},
           {"className": "LumoControlNode", "type": "slider", "data": {}},
           {"className": "LumoControlNode", "context": {"data": {"type": "slider"}}}])",
       {R"(cannot-tell /0/context: write "context" instead of "Context")",
        R"(cannot-tell /1/context: "type" and "data" belong in "context")",
        R"(cannot-tell /2/context/type: move "type" into "context")"}},
      {R"({"className": "LumoControlNode"})",
       {R"(cannot-tell /context: add "context": {"type": "button"}, or another type: )" +
        otherTypes}},
      {R"({"className": "SpinnerControlNode", "context": {"text": "a", "data": {"text": "b"}}})",
       {R"(unknown-member /context/text: take it out: there is one in "context"."data" already)"}},
      {R"({"className": "LumoControlNode", "context": {"type": "comboBox", "data":
           {"items": ["mean", {"label": "Mode", "value": "mode"}], "defaultValue": "mean"}}})",
       {R"(wrong-type /context/data/items/0: write an object: {"label": "mean", "value": "mean"})"}},
      {R"([{"className": "FileBrowserControlNode", "context": {"data": {"browserType": null}}},
           {"className": "SpinnerControlNode", "context": {"data": {"step": true}}}])",
       {"wrong-type /0/context/data/browserType: write a text",
        "wrong-type /1/context/data/step: write a number, or leave it out"}},
      {R"({"className": "LumoControlNode", "context": {"type": "editField", "data":
           {"valueType": "double", "defaultValue": 2.5, "defaultValueLinkedVariable": "a"}}})",
       {R"(wrong-type /context/data/defaultValue: )"
        R"(put it in quotes: "2.5", or write "valueType": "Double")"}},
      {R"({"className": "LumoControlNode", "context": {"type": "comboBox",
           "data": {"items": "a;b", "itemLabels": null}}})",
       {R"(wrong-type /context/data/items: write an array: [{"label": "...", "value": "..."}, ...])",
        R"(wrong-type /context/data/itemLabels: write an array: ["...", ...], or leave it out)"}},
      {R"({"className": "LumoControlNode", "context": {"type": "comboBox",
           "data": {"items": [{"label": "a", "item": "b"}]}}})",
       {R"(missing-member /context/data/items/0/value: add "value": "...")",
        R"(unknown-member /context/data/items/0/item: did you mean "value"?)"}},
      {R"({"className": "SpinnerControlNode", "min": 1, "context": {"data": {"max": 2, "hue": 3}}})",
       {R"(unknown-member /context/data/hue: what can be added here: "defaultValue", "maximum", )"
        R"("minimum", "step", "defaultValueLinkedVariable", "executionModel", "executionOn", )"
        R"("maxLinkedVariable", "minLinkedVariable", "stepLinkedVariable", "text")",
        R"(unknown-member /context/data/max: did you mean "maximum"?)",
        R"(unknown-member /min: did you mean "minimum" in "context"."data"?)"}},
      {R"({"className": "SpinnerControlNode", "context": {"data":
           {"linkedVariable": "a", "mxnimum": 1, "// maximum": 2, "comment": "b"}}})",
       {"unknown-member /context/data/~1~1 maximum: take it out",
        "unknown-member /context/data/comment: take it out",
        R"(unknown-member /context/data/linkedVariable: did you mean "defaultValueLinkedVariable", )"
        R"("maxLinkedVariable", "minLinkedVariable" or "stepLinkedVariable"?)",
        R"(unknown-member /context/data/mxnimum: did you mean "minimum"?)"}},
      {R"({"className": "LumoControlNode", "context": {"type": "comboBox", "data": {"items":
           [{"label": "a", "value": 1}, {"label": 2, "value": "b"}, {"label": "c", "value": 3}]}}})",
       {R"(wrong-type /context/data/items/0/value: put it in quotes: "1")",
        R"(wrong-type /context/data/items/1/label: put it in quotes: "2")",
        R"(wrong-type /context/data/items/2/value: put it in quotes: "3")"}},
      {R"({"className": "LumoAppLineNode", "children": [{"className": "TextNode"},
           {"className": "LumoAppIntegratedInLineNode"}, 1]})",
       {R"(ignored-member /children/0: those that are read have )"
        R"("className": "LumoAppIntegratedInlineNode")",
        R"(ignored-member /children/1: did you mean "LumoAppIntegratedInlineNode"?)",
        R"(ignored-member /children/2: those that are read have )"
        R"("className": "LumoAppIntegratedInlineNode")"}},
      // Of the controls with one id, those that read it, in the order of the text.
      {R"({"z": {"className": "button", "controlId": "a"}, "y": {"className": "button",
           "controlId": "a"}, "x": {"className": "LumoAppIntegratedInlineNode", "controlId": "a"}})",
       {R"(unknown-member /x/controlId: what can be added here: "appIdentifier", "appState", )"
        R"("appVariables", "appVariablesUserMap", "autorun", "collapsed", "executionModel", )"
        R"("instanceId", "taskID", "text", "view", "numOfCodeLines")",
        "duplicate-id /y/controlId: write another one; the first is at line 1, column 44"}},
      {R"({"className": "SpinnerControlNode", "context": {"data": {"step": "1e400", "minimum": "0,05",
           "maximum": " 48 ", "defaultValue": "1,000"}}})",
       {"wrong-type /context/data/minimum: write a number, without quotes: 0.05",
        "wrong-type /context/data/maximum: write a number, without quotes: 48",
        "wrong-type /context/data/step: write a number, without quotes",
        "wrong-type /context/data/defaultValue: write a number, without quotes"}},
      {R"({"className": "SpinnerControlNode", "context": {"data": {"step": "-.5", "minimum": "007",
           "maximum": "12 h", "defaultValue": "+5."}}})",
       {"wrong-type /context/data/minimum: write a number, without quotes: 7",
        "wrong-type /context/data/maximum: write a number, without quotes",
        "wrong-type /context/data/step: write a number, without quotes: -0.5",
        "wrong-type /context/data/defaultValue: write a number, without quotes: 5"}},
      {R"({"className": "LumoAppLineNode", "children": [{"className": 5}]})",
       {R"(wrong-type /children/0/className: write "LumoAppIntegratedInlineNode")"}},
      // Of a builder that nobody has told of.
      {R"({"className": "DialNode", "range": {"from": 1, "to": "2"}})",
       {"wrong-type /range/to: write it without quotes: 2"}},
      {R"([{"className": "DailNode"}, {"className": "DialNode", "range": {"from": 1, "to": 2},
           "mark": [], "options": {"a": "b"}}])",
       {R"(unknown-member /1/mark: did you mean "marks"?)",
        R"(unknown-class /0/className: did you mean "DialNode"?)"}},
      {R"({"className": "DialNode", "range": {"from": 1, "to": 2}, "options": {"a": 1}})",
       {"build-failed none"}},
  };
  for (const auto& row : rows) EXPECT_EQ(said(row.document), row.said) << row.document;
}

TEST(DocumentCheckTest, WithoutWarningsOnlyErrorsAreTold) {
  EXPECT_THAT(said(R"([{"controlId": "a"},
                       {"className": "SpinnerControlNode", "startColumn": "1", "other": 1}])",
                   Warnings::kNo),
              ElementsAre("wrong-type /1/startColumn: write it without quotes: 1"));
}

TEST(DocumentCheckTest, WordsAreLearntFromTheDocument) {
  // Also from what fails.
  EXPECT_THAT(said(R"([{"className": "LumoControlNode", "context": {"type": "combobx"}},
                       {"className": "LumoControlNode", "startColumn": "1",
                        "context": {"type": "comboBox"}}])",
                   Warnings::kYes, {"LumoControlNode"}),
              ElementsAre("wrong-type /1/startColumn: write it without quotes: 1",
                          R"(unknown-type /0/context/type: did you mean "comboBox"?)"));
  EXPECT_THAT(said(R"([{"className": "LumoControlNode", "context": {"type": "editField", "data":
                        {"defaultValue": 2, "defaultValueLinkedVariable": "a"}}},
                       {"className": "LumoControlNode", "context": {"type": "editField", "data":
                        {"valueType": "Double"}}}])",
                   Warnings::kYes, {"LumoControlNode"}),
              ElementsAre(R"(wrong-type /0/context/data/defaultValue: )"
                          R"(put it in quotes: "2", or write "valueType": "Double")"));
}

/// Tells its objects apart by their type, and need not have one.
class GaugeBuilder final : public tessel::build::json::NodeBuilder {
 public:
  bool canBuild(const Value& json) const override {
    if (json["className"] != Value("Gauge")) return false;
    if (!json.hasOwnProperty("context")) throw std::runtime_error("no context");
    return json["context"]["type"] == Value("round");
  }
  document::gxzero::Node build(const gx::zero::Model&, const Value&) const override { return {}; }
};

TEST(DocumentCheckTest, AGenericControlMayHaveNoType) {
  const std::vector<NamedBuilder> gauge{{"Gauge", std::make_shared<const GaugeBuilder>()}};
  const Knowledge knowledge(gauge, {"Gauge", "round"});
  const char* text = R"({"className": "Gauge", "context": {}})";
  const auto problems = checkDocument(knowledge, json(text), text, Warnings::kYes).problems;
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_EQ(problems[0].member, "/context/type");
  EXPECT_EQ(problems[0].message, R"(object of class "Gauge": has no type)");
}

/// Wants a number "at" in each of its "rows", and numbers in their "cells", where it has any. It
/// counts what it is shown.
class GridBuilder final : public tessel::build::json::NodeBuilder {
 public:
  bool canBuild(const Value& json) const override {
    ++asked;
    return json["className"] == Value("Grid");
  }
  document::gxzero::Node build(const gx::zero::Model& model, const Value& json) const override {
    const auto* rows = json["rows"].get_if<Value::Array>();
    if (rows == nullptr) throw std::runtime_error("no rows");
    for (const Value& row : *rows) {
      ++rowsShown;
      requireNumber(row["at"]);
      const auto* cells = row["cells"].get_if<Value::Array>();
      if (cells == nullptr) continue;
      for (const Value& cell : *cells) requireNumber(cell);
    }
    return test_support::DialBuilder().build(model, test_support::json(kDial));
  }

  mutable std::size_t asked = 0;
  mutable std::size_t rowsShown = 0;

 private:
  static void requireNumber(const Value& value) {
    if (value.get_if<double>() != nullptr) return;
    throw std::runtime_error(std::string("invalid conversion: ") + typeNameOf(value) +
                             " to double");
  }
  static constexpr const char* kDial = R"({"range": {"from": 1, "to": 2}})";
};

struct Grid {
  std::shared_ptr<const GridBuilder> builder = std::make_shared<const GridBuilder>();
  std::vector<NamedBuilder> builders{{"Grid", builder}};
  Knowledge knowledge{builders, {}};

  /// The pointers of all values that are of a wrong type.
  std::vector<std::string> wrong(const std::string& text) const {
    std::vector<std::string> pointers;
    for (const Problem& problem :
         checkDocument(knowledge, json(text), text, Warnings::kNo).problems) {
      EXPECT_EQ(problem.code, Code::kWrongType);
      pointers.push_back(problem.member.value_or("none"));
    }
    return pointers;
  }
};

TEST(DocumentCheckTest, EveryWrongElementIsTold) {
  EXPECT_THAT(Grid().wrong(R"({"className": "Grid", "rows": [
                  {"at": 1}, {"at": "", "cells": ["", ""]}, {"at": "", "cells": ["", 1, "", ""]},
                  {"at": "", "cells": [""]}, {"at": 1, "cells": [1, ""]}, {"at": ""}]})"),
              ::testing::UnorderedElementsAre("/rows/1/at", "/rows/1/cells/0", "/rows/1/cells/1",
                                              "/rows/2/at", "/rows/2/cells/0", "/rows/2/cells/2",
                                              "/rows/2/cells/3", "/rows/3/at", "/rows/3/cells/0",
                                              "/rows/4/cells/1", "/rows/5/at"));
}

TEST(DocumentCheckTest, WorkGrowsWithTheWrongElements) {
  const auto rowsShown = [](std::size_t count) {
    std::string rows;
    for (std::size_t row = 0; row != count; ++row) {
      rows += (rows.empty() ? R"({"at": "", "key)" : R"(, {"at": "", "key)") + std::to_string(row) +
              R"(": 1})";
    }
    const Grid grid;
    EXPECT_EQ(grid.wrong(R"({"className": "Grid", "rows": [)" + rows + "]}").size(), count);
    return grid.builder->rowsShown;
  };
  EXPECT_LT(rowsShown(200), 6 * rowsShown(50));
}

TEST(OfferedObjectsTest, EachObjectIsOfferedOnce) {
  const Grid grid;
  const Value document = json(R"({"a": {"b": [{"className": "Grid", "c": {"d": 1}}, {"e": 1}]}})");
  OfferedObjects offered(grid.knowledge, document);
  for (int time = 0; time != 3; ++time) {
    EXPECT_EQ(offered.around("/x"), "");
    EXPECT_EQ(offered.around("/a/b"), "/a");
    EXPECT_EQ(offered.around("/a/b/0/c/d"), "/a/b/0");
    EXPECT_EQ(offered.around("/a/b/1/e"), "/a/b/1");
  }
  EXPECT_EQ(grid.builder->asked, 4U);
}

TEST(AnswersTest, AreNoMoreThanSoMany) {
  Answers<std::size_t> answers(10);
  const auto known = [&](const std::string& ending) {
    std::size_t count = 0;
    for (std::size_t number = 0; number != 100; ++number) {
      count += answers.find(std::to_string(number) + ending) ? 1 : 0;
    }
    return count;
  };
  for (const std::size_t length : {0U, 5000U, 5000000U}) {
    const std::string ending(length, 'x');
    for (std::size_t number = 0; number != 100; ++number) {
      const std::string question = std::to_string(number) + ending;
      EXPECT_EQ(answers.get(question, [&] { return number; }), number);
    }
    EXPECT_EQ(known(ending), length == 0 ? 10U : length == 5000U ? 1U : 0U);
  }
}

TEST(KnowledgeTest, EveryBuilderReactsToSomeWord) {
  const Knowledge knowledge(test_support::allBuilders(), tessel_tool::knownWords());
  for (const NamedBuilder& builder : test_support::allBuilders()) {
    EXPECT_THAT(knowledge.recognitions(), Contains(Field(&Recognition::builder, &builder)))
        << builder.name() << "'s name does not suggest its class name or type: add that to "
        << "src/tessel_tool/words.hpp";
  }
}

TEST(KnowledgeTest, ABuildersNameSuggestsItsWords) {
  const auto dial = std::make_shared<const test_support::DialBuilder>();
  for (const char* name : {"Dial", "DialBuilder", "a::b::DialNodeBuilderImpl"}) {
    const std::vector<NamedBuilder> named{{name, dial}};
    EXPECT_THAT(Knowledge(named, {"Double"}).words(), ElementsAre("Double", "DialNode")) << name;
  }
  for (const char* name : {"", "Impl", "Knob", "DialNodeMaker"}) {
    const std::vector<NamedBuilder> named{{name, dial}};
    EXPECT_THAT(Knowledge(named, {"Double"}).words(), ElementsAre("Double")) << name;
  }
}

TEST(KnowledgeTest, WhatABuilderReadsIsLearnt) {
  const Knowledge knowledge(builders(), tessel_tool::knownWords());
  const auto kind = knowledge.kindOf(
      builders().back(), json(R"({"className": "DialNode", "range": {"from": 1, "to": 2}})"));
  std::vector<std::string> places;
  for (const auto& [pattern, known] : kind->places) {
    places.push_back(pattern + ' ' + known.wanted + (known.forRecognition ? " recognised" : ""));
  }
  EXPECT_THAT(places,
              ElementsAre("/className string recognised", "/marks array", "/marks/*/at double",
                          "/names array", "/names/* string", "/options ", "/range object",
                          "/range/from double", "/range/to double"));
}

}  // namespace

}  // namespace reference_host::diagnosis
