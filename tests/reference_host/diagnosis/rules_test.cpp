#include "reference_host/diagnosis/rules.hpp"

#include <gmock/gmock.h>

#include <cstddef>
#include <string>
#include <vector>

#include "reference_host/diagnosis/document_check.hpp"
#include "support/all_builders.hpp"
#include "support/json.hpp"

namespace reference_host::diagnosis {
namespace {

std::string asText(const States& states) {
  std::string text;
  for (const State& state : states) {
    text += text.empty() ? "" : "|";
    text += state.word.empty() ? state.type : '"' + state.word + '"';
  }
  return text;
}

/// The rules of a place, as "CONDITION and CONDITION: WHAT IT MAY HOLD".
std::vector<std::string> rulesFor(const char* className, const char* type, const char* place) {
  // The other builders would bring their own words.
  std::vector<importer::NamedBuilder> claimers;
  for (const auto& builder : test_support::allBuilders()) {
    if (builder.canBuild(Recognition{nullptr, className, type}.sample()))
      claimers.push_back(builder);
  }
  const Knowledge knowledge(claimers, {className, type, "Double"});
  std::vector<std::string> found;
  for (const Recognition& recognition : knowledge.recognitions()) {
    if (recognition.className != className || recognition.type.value_or("") != type) continue;
    Rules rules = learnRules(knowledge, recognition);
    for (const Rule& rule : rules[place]) {
      std::string text;
      for (const Condition& condition : rule.conditions) {
        text += (text.empty() ? "" : " and ") + condition.place + " " + asText(condition.states);
      }
      found.push_back(text + ": " + asText(rule.allowed));
    }
  }
  return found;
}

TEST(RulesTest, AreLearntFromTheBuilders) {
  const struct {
    const char* className;
    const char* type;
    const char* place;
    std::vector<std::string> rules;
  } rows[] = {
      {"LumoControlNode", "slider", "/context/data/step", {": double|undefined"}},
      {"FileBrowserControlNode", "", "/context/data/browserType", {": string"}},
      // What is required beside another field, and what a word decides about.
      {"LumoControlNode",
       "editField",
       "/context/data/defaultValueLinkedVariable",
       {"/context/data/defaultValue array|bool|double|null|object|string: string"}},
      {"LumoControlNode",
       "editField",
       "/context/data/defaultValue",
       {R"(/context/data/valueType array|bool|double|null|object|string|"LumoControlNode"|"editField")"
        "|undefined: string|undefined"}},
      {"LumoControlNode", "slider", "/controlId", {}},
      {"LumoControlNode", "comboBox", "/context/data/items/*/label", {": string"}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(rulesFor(row.className, row.type, row.place), row.rules) << row.place;
  }
}

TEST(LintsTest, UnlikelyValuesAreTold) {
  const std::string spinner = R"({"className": "SpinnerControlNode", "context": {"data": {)";
  const std::string button = R"({"className": "button", )";
  const std::string comboBox =
      R"({"className": "LumoControlNode", "context": {"type": "comboBox", "data": {)";
  const struct {
    std::string control;
    std::vector<std::string> told;
  } rows[] = {
      {spinner + R"("minimum": 1, "maximum": 1, "step": 0.5, "defaultValue": 1}}})", {}},
      {spinner + R"("minimum": 3, "maximum": 1, "defaultValue": 0}}})",
       {R"(/context/data/maximum is below "minimum", 3)",
        R"(/context/data/defaultValue is below "minimum", 3)"}},
      {spinner + R"("minimum": 3, "maximum": 1, "defaultValue": 2}}})",
       {R"(/context/data/maximum is below "minimum", 3)"}},
      {spinner + R"("step": 0}}})", {"/context/data/step is not positive: 0"}},
      {spinner + R"("step": -1.5}}})", {"/context/data/step is not positive: -1.5"}},
      {spinner + R"("minimum": 2, "defaultValue": 1}}})",
       {R"(/context/data/defaultValue is below "minimum", 2)"}},
      {spinner + R"("maximum": 2, "defaultValue": 3}}})",
       {R"(/context/data/defaultValue is above "maximum", 2)"}},
      {spinner + R"("minimum": "2", "maximum": 1}}})", {}},
      {button + R"("startColumn": 0, "endColumn": 2, "text": "ab"})", {}},
      {button + R"("startColumn": -1})", {"/startColumn is negative: -1"}},
      {button + R"("endColumn": 1.5})", {"/endColumn is no whole number: 1.5"}},
      {button + R"("startColumn": 2, "endColumn": 1})",
       {R"(/endColumn is before "startColumn", 2)"}},
      {button + R"("startColumn": 3.5, "endColumn": 1, "text": "ab"})",
       {"/startColumn is no whole number: 3.5",
        R"(/startColumn is 3.5, but "text" ends at 2; columns count from 0)",
        R"(/endColumn is before "startColumn", 3.5)"}},
      // What is not read is not judged by.
      {R"({"className": "SpinnerControlNode", "text": "a", "endColumn": 2})", {}},
      {R"({"className": "DatePickerControlNode", "context": {"data":
           {"displayFormat": "d", "items": [], "defaultValue": "a"}}})",
       {}},
      {button + R"("endColumn": 2, "text": "😀"})", {}},
      {button + R"("endColumn": 2, "text": "ä"})",
       {R"(/endColumn is 2, but "text" ends at 1; columns count from 0)"}},
      {comboBox + R"("items": [{"label": "a", "value": "b"}], "defaultValue": "a"}}})", {}},
      {comboBox + R"("items": [{"label": "a", "value": "b"}], "defaultValue": "b"}}})", {}},
      {comboBox + R"("itemLabels": ["c"], "defaultValue": "c"}}})", {}},
      {comboBox + R"("items": [{"label": "a", "value": "b"}], "itemLabels": ["c"],
          "defaultValue": "d"}}})",
       {"/context/data/defaultValue is not among the items"}},
      {comboBox + R"("defaultValue": "d"}}})", {}},
      // What cannot be read may be what is meant.
      {comboBox + R"("items": ["d"], "defaultValue": "d"}}})", {}},
      {comboBox + R"("items": {}, "itemLabels": ["c"], "defaultValue": "d"}}})", {}},
      {comboBox + R"("items": [], "itemLabels": {}, "defaultValue": "d"}}})", {}},
      {comboBox + R"("items": [], "itemLabels": [1], "defaultValue": "d"}}})", {}},
  };
  const Knowledge knowledge(test_support::allBuilders(),
                            {"LumoControlNode", "comboBox", "button", "SpinnerControlNode"});
  for (const auto& row : rows) {
    std::vector<std::string> told;
    for (const Problem& problem :
         checkDocument(knowledge, test_support::json(row.control), row.control, Warnings::kYes)
             .problems) {
      if (problem.code != Code::kUnlikelyValue) continue;
      const std::size_t place = problem.message.find("\" ") + 1;
      told.push_back(problem.member.value() + problem.message.substr(place));
    }
    EXPECT_EQ(told, row.told) << row.control;
  }
}

}  // namespace
}  // namespace reference_host::diagnosis
