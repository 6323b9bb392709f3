#include "reference_host/diagnosis/document_check.hpp"

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

#include "support/all_builders.hpp"
#include "support/dial_builder.hpp"
#include "support/json.hpp"
#include "words.hpp"

namespace reference_host::diagnosis {

namespace {

using importer::NamedBuilder;
using test_support::json;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Field;

const std::vector<NamedBuilder>& builders() {
  static const std::vector<NamedBuilder> all = [] {
    std::vector<NamedBuilder> builders = test_support::allBuilders();
    builders.emplace_back("Dial", std::make_shared<const test_support::DialBuilder>());
    return builders;
  }();
  return all;
}

/// Every problem as "code member: hint".
std::vector<std::string> said(const std::string& document, Warnings warnings = Warnings::kYes) {
  const Knowledge knowledge(builders(), tessel_tool::knownWords());
  std::vector<std::string> lines;
  for (const Problem& problem : checkDocument(knowledge, json(document), warnings).problems) {
    std::string line = codeName(problem.code) + (' ' + problem.member.value_or("none"));
    if (problem.hint) line += ": " + *problem.hint;
    lines.push_back(line);
  }
  return lines;
}

struct Row {
  const char* document;
  std::vector<std::string> said;
};

TEST(DocumentCheckTest, Hints) {
  const Row rows[] = {
      {R"({"className": "TextNode", "anything": [1]})", {}},
      {R"({"className": "SpinnerControlNode", "context": {"data": {"minimum": "0"}}})",
       {"wrong-type /context/data/minimum: write it without quotes: 0"}},
      {R"({"className": "SpinnerControlNode", "context": {"data": {"text": 5}}})",
       {R"(wrong-type /context/data/text: put it in quotes: "5")"}},
      {R"({"className": "FileBrowserControlNode", "context": {"data": {"browsertype": "file"}}})",
       {R"(missing-member /context/data/browserType: write "browserType" instead of "browsertype")",
        R"(unknown-member /context/data/browsertype: did you mean "browserType"?)"}},
      {R"({"className": "FileBrowserControlNode", "context": {"browserType": "file"}})",
       {R"(missing-member /context/data/browserType: move "browserType" into "context"."data")",
        R"(unknown-member /context/browserType: "browserType" belongs in "context"."data")"}},
      {R"({"className": "FileBrowserControlNode"})",
       {R"(missing-member /context/data/browserType: )"
        R"(add "browserType": "..." in "context"."data")"}},
      {R"({"className": "FileBrowserControlNode", "context": "file"})",
       {"wrong-type /context: write an object: {\"data\": ...}"}},
      {R"({"className": "SpinnerControlNode", "minimum": 1, "context": {"data": {}}})",
       {R"(unknown-member /minimum: "minimum" belongs in "context"."data")"}},
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
      {R"({"className": "LumoControlNode", "context": {"type": "Slider"}})",
       {R"(unknown-type /context/type: did you mean "slider"?)"}},
      {R"({"className": "LumoControlNode", "context": {"type": "spinner"}})",
       {R"(unknown-type /context/type: write "className": "SpinnerControlNode")"}},
      {R"({"className": "lumoControlNode"})",
       {R"(unknown-class /className: did you mean "LumoControlNode"?)"}},
      {R"({"className": "SliderControlNode"})",
       {R"(unknown-class /className: write "className": "LumoControlNode" with "type": )"
        R"("slider" in "context")"}},
      {R"({"className": "Spinner"})",
       {R"(unknown-class /className: write "className": "SpinnerControlNode")"}},
      {R"({"className": "Thing", "controlId": "a"})", {"unknown-class /className"}},
      {R"({"controlId": "a"})", {R"(unknown-class : add "className": "...")"}},
      {R"({"className": "LumoControlNode"})",
       {R"(cannot-tell /context: add "context": {"type": T, ...}, where T is one of )"
        R"("button", "checkBox", "comboBox", "editField", "slider")"}},
      {R"({"className": "LumoControlNode", "context": {"type": "comboBox",
           "data": {"items": ["a"]}}})",
       {R"(wrong-type /context/data/items/0: write an object: {"label": ..., "value": ...})"}},
      {R"({"className": "LumoControlNode", "context": {"type": "comboBox", "data": {"items":
           [{"label": "a", "value": 1}, {"label": 2, "value": "b"}, {"label": "c", "value": 3}]}}})",
       {R"(wrong-type /context/data/items/0/value: put it in quotes: "1")",
        R"(wrong-type /context/data/items/2/value: put it in quotes: "3")",
        R"(wrong-type /context/data/items/1/label: put it in quotes: "2")"}},
      {R"([{"className": "button", "controlId": "a"}, {"className": "button", "controlId": "a"}])",
       {"duplicate-id /1/controlId: write another one; the first is at /0"}},
      {R"({"className": "LumoAppLineNode", "children": [{"className": "TextNode"}]})",
       {"ignored-member /children/0"}},
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
  for (const Row& row : rows) EXPECT_EQ(said(row.document), row.said) << row.document;
}

TEST(DocumentCheckTest, WithoutWarningsOnlyErrorsAreTold) {
  EXPECT_THAT(said(R"([{"controlId": "a"},
                       {"className": "SpinnerControlNode", "startColumn": "1", "other": 1}])",
                   Warnings::kNo),
              ElementsAre("wrong-type /1/startColumn: write it without quotes: 1"));
}

TEST(KnowledgeTest, EveryBuilderReactsToSomeWordOfTheTool) {
  const Knowledge knowledge(test_support::allBuilders(), tessel_tool::knownWords());
  for (const NamedBuilder& builder : test_support::allBuilders()) {
    EXPECT_THAT(knowledge.recognitions(), Contains(Field(&Recognition::builder, &builder)))
        << builder.name();
  }
}

TEST(KnowledgeTest, WhatABuilderReadsIsLearnt) {
  const Knowledge knowledge(builders(), tessel_tool::knownWords());
  const Kind& kind = knowledge.kindOf(
      builders().back(), json(R"({"className": "DialNode", "range": {"from": 1, "to": 2}})"));
  std::vector<std::string> places;
  for (const auto& [pattern, known] : kind.places) {
    places.push_back(pattern + ' ' + known.wanted + (known.forRecognition ? " recognised" : ""));
  }
  EXPECT_THAT(places,
              ElementsAre("/className string recognised", "/marks array", "/marks/*/at double",
                          "/names array", "/names/* string", "/options ", "/range object",
                          "/range/from double", "/range/to double"));
}

}  // namespace

}  // namespace reference_host::diagnosis
