#include "framework/recognition.hpp"

#include <gmock/gmock.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/allocation_count.hpp"
#include "support/json.hpp"
#include "support/records.hpp"
#include "tessel/build/json/core.hpp"

namespace tessel::build::json::controls::framework {
namespace {

using foundation::json::Value;
using test_support::json;
using test_support::Records;
using test_support::recordsOf;

enum Rule { kClassName, kTypeWord, kTypeWordOrClassName, kHostClassName, kRuleCount };

bool ask(Rule rule, const Value& value, const char* word) {
  switch (rule) {
    case kClassName:
      return recognizeByClassName(value, word);
    case kTypeWord:
      return recognizeByTypeWord(value, word);
    case kTypeWordOrClassName:
      return recognizeByTypeWordOrClassName(value, word);
    default:
      return core::has_className(value, word);
  }
}

// The recognition table: every builder's rule and word.
struct Kind {
  const char* builder;
  Rule rule;
  const char* word;
};

const Kind kKinds[] = {
    {"ButtonBuilderImpl", kTypeWordOrClassName, "button"},
    {"CheckBoxBuilderImpl", kTypeWord, "checkBox"},
    {"ComboboxBuilderImpl", kTypeWord, "comboBox"},
    {"EditFieldBuilderImpl", kTypeWord, "editField"},
    {"SliderNodeBuilderImpl", kTypeWord, "slider"},
    {"ColorPickerBuilderImpl", kClassName, "ColorPickerControlNode"},
    {"FileBrowserBuilderImpl", kClassName, "FileBrowserControlNode"},
    {"RangeSliderNodeBuilderImpl", kClassName, "RangeSliderControlNode"},
    {"SpinnerNodeBuilderImpl", kClassName, "SpinnerControlNode"},
    {"StateButtonBuilderImpl", kClassName, "StateButtonControlNode"},
    {"LumoTaskIntegratedInlineNodeBuilderImpl", kClassName, "LumoAppIntegratedInlineNode"},
    {"DatePickerBuilderImpl", kHostClassName, "DatePickerControlNode"},
    {"LumoTaskHeaderBuilderImpl", kHostClassName, "LumoAppLineNode"},
};

const Records kNone;
const Records kNotAnObject = {"Incoming JSON was not an Object"};
const char* const kNo = "no";

// What the rules answer where no word matches: "no", or the text of the error.
struct Case {
  const char* description;
  Value value;
  const char* claimedBy;
  const char* answers[kRuleCount];  // by rule, in the enumeration's order
  Records records;                  // of the module's own three rules
};

std::string answerOf(Rule rule, const Value& value, const char* word) {
  try {
    return ask(rule, value, word) ? "yes" : kNo;
  } catch (const std::runtime_error& error) {
    return error.what();
  }
}

const std::vector<Case>& cases() {
  static const char* const kUndefinedObject = "invalid conversion: undefined to object";
  static const char* const kUndefinedString = "invalid conversion: undefined to string";
  static const std::vector<Case> all = {
      {"generic control with the button's word",
       json(R"({"className":"LumoControlNode","context":{"type":"button"}})"),
       "ButtonBuilderImpl",
       {kNo, kNo, kNo, kNo},
       kNone},
      {"generic control with the check box's word",
       json(R"({"className":"LumoControlNode","context":{"type":"checkBox"}})"),
       "CheckBoxBuilderImpl",
       {kNo, kNo, kNo, kNo},
       kNone},
      {"generic control with the combo box's word",
       json(R"({"className":"LumoControlNode","context":{"type":"comboBox"}})"),
       "ComboboxBuilderImpl",
       {kNo, kNo, kNo, kNo},
       kNone},
      {"generic control with the edit field's word",
       json(R"({"className":"LumoControlNode","context":{"type":"editField"}})"),
       "EditFieldBuilderImpl",
       {kNo, kNo, kNo, kNo},
       kNone},
      {"generic control with the slider's word",
       json(R"({"className":"LumoControlNode","context":{"type":"slider"}})"),
       "SliderNodeBuilderImpl",
       {kNo, kNo, kNo, kNo},
       kNone},
      {"colour picker's class name",
       json(R"({"className":"ColorPickerControlNode"})"),
       "ColorPickerBuilderImpl",
       {kNo, kNo, kNo, kNo},
       kNone},
      {"file browser's class name",
       json(R"({"className":"FileBrowserControlNode"})"),
       "FileBrowserBuilderImpl",
       {kNo, kNo, kNo, kNo},
       kNone},
      {"range slider's class name",
       json(R"({"className":"RangeSliderControlNode"})"),
       "RangeSliderNodeBuilderImpl",
       {kNo, kNo, kNo, kNo},
       kNone},
      {"spinner's class name",
       json(R"({"className":"SpinnerControlNode"})"),
       "SpinnerNodeBuilderImpl",
       {kNo, kNo, kNo, kNo},
       kNone},
      {"state button's class name",
       json(R"({"className":"StateButtonControlNode"})"),
       "StateButtonBuilderImpl",
       {kNo, kNo, kNo, kNo},
       kNone},
      {"integrated inline task node's class name",
       json(R"({"className":"LumoAppIntegratedInlineNode"})"),
       "LumoTaskIntegratedInlineNodeBuilderImpl",
       {kNo, kNo, kNo, kNo},
       kNone},
      {"date picker's class name",
       json(R"({"className":"DatePickerControlNode"})"),
       "DatePickerBuilderImpl",
       {kNo, kNo, kNo, kNo},
       kNone},
      {"task header's class name",
       json(R"({"className":"LumoAppLineNode"})"),
       "LumoTaskHeaderBuilderImpl",
       {kNo, kNo, kNo, kNo},
       kNone},

      {"the button's word as a class name",
       json(R"({"className":"button"})"),
       "ButtonBuilderImpl",
       {kNo, kNo, kNo, kNo},
       kNone},
      {"another type word as a class name is meant for nobody",
       json(R"({"className":"checkBox"})"),
       "",
       {kNo, kNo, kNo, kNo},
       kNone},
      {"a class name keeps its context unread",
       json(R"({"className":"SpinnerControlNode","context":7})"),
       "SpinnerNodeBuilderImpl",
       {kNo, kNo, kNo, kNo},
       kNone},
      {"a picker's class name wins over the type word of its context",
       json(R"({"className":"ColorPickerControlNode","context":{"type":"button"}})"),
       "ColorPickerBuilderImpl",
       {kNo, kNo, kNo, kNo},
       kNone},

      {"case of the type word matters",
       json(R"({"className":"LumoControlNode","context":{"type":"Button"}})"),
       "",
       {kNo, kNo, kNo, kNo},
       kNone},
      {"case of the class name matters",
       json(R"({"className":"lumoControlNode","context":{"type":"button"}})"),
       "",
       {kNo, kNo, kNo, kNo},
       kNone},
      {"a type word is not trimmed",
       json(R"({"className":"LumoControlNode","context":{"type":"button "}})"),
       "",
       {kNo, kNo, kNo, kNo},
       kNone},
      {"a prefix of a type word is no match",
       json(R"({"className":"LumoControlNode","context":{"type":"butto"}})"),
       "",
       {kNo, kNo, kNo, kNo},
       kNone},
      {"a class name with a character more is no match",
       json(R"({"className":"SpinnerControlNode2"})"),
       "",
       {kNo, kNo, kNo, kNo},
       kNone},
      {"a zero character counts",
       Value(Value::Object{{"className", Value(std::string("button\0", 7))}}),
       "",
       {kNo, kNo, kNo, kNo},
       kNone},
      {"empty class name", json(R"({"className":""})"), "", {kNo, kNo, kNo, kNo}, kNone},
      {"empty object", json("{}"), "", {kNo, kNo, kNo, kNo}, kNone},
      {"no class name", json(R"({"context":{"type":"button"}})"), "", {kNo, kNo, kNo, kNo}, kNone},
      {"a key with a character more is no class name",
       json(R"({"className2":"button"})"),
       "",
       {kNo, kNo, kNo, kNo},
       kNone},
      {"a class name behind four other keys",
       json(R"({"a":"b","b":"c","c":"d","className":"button","cl":{}})"),
       "ButtonBuilderImpl",
       {kNo, kNo, kNo, kNo},
       kNone},
      {"the key's case matters",
       json(R"({"classname":"button"})"),
       "",
       {kNo, kNo, kNo, kNo},
       kNone},

      {"class name that is a number",
       json(R"({"className":7})"),
       "",
       {"invalid conversion: double to string", "invalid conversion: double to string",
        "invalid conversion: double to string", kNo},
       kNone},
      {"class name that is null",
       json(R"({"className":null})"),
       "",
       {"invalid conversion: null to string", "invalid conversion: null to string",
        "invalid conversion: null to string", kNo},
       kNone},
      {"generic control without context",
       json(R"({"className":"LumoControlNode"})"),
       "",
       {kNo, kUndefinedObject, kUndefinedObject, kNo},
       kNone},
      {"generic control whose context is text",
       json(R"({"className":"LumoControlNode","context":"button"})"),
       "",
       {kNo, "invalid conversion: string to object", "invalid conversion: string to object", kNo},
       kNone},
      {"generic control whose context is an array",
       json(R"({"className":"LumoControlNode","context":[]})"),
       "",
       {kNo, "invalid conversion: array to object", "invalid conversion: array to object", kNo},
       kNone},
      {"generic control without type",
       json(R"({"className":"LumoControlNode","context":{}})"),
       "",
       {kNo, kUndefinedString, kUndefinedString, kNo},
       kNone},
      {"generic control whose type is a number",
       json(R"({"className":"LumoControlNode","context":{"type":1}})"),
       "",
       {kNo, "invalid conversion: double to string", "invalid conversion: double to string", kNo},
       kNone},

      {"array", json("[]"), "", {kNo, kNo, kNo, kNo}, kNotAnObject},
      {"number", json("3"), "", {kNo, kNo, kNo, kNo}, kNotAnObject},
      {"text", json(R"("button")"), "", {kNo, kNo, kNo, kNo}, kNotAnObject},
      {"null", json("null"), "", {kNo, kNo, kNo, kNo}, kNotAnObject},
      {"true", json("true"), "", {kNo, kNo, kNo, kNo}, kNotAnObject},
      {"Undefined", Value(), "", {kNo, kNo, kNo, kNo}, kNotAnObject},
      {"float", Value(1.0F), "", {kNo, kNo, kNo, kNo}, kNotAnObject},
      {"signed 64-bit integer", Value(std::int64_t{1}), "", {kNo, kNo, kNo, kNo}, kNotAnObject},
      {"unsigned 64-bit integer", Value(std::uint64_t{1}), "", {kNo, kNo, kNo, kNo}, kNotAnObject},
  };
  return all;
}

TEST(Recognition, EveryKindAnswersEveryCase) {
  for (const Case& row : cases()) {
    SCOPED_TRACE(row.description);
    for (const Kind& kind : kKinds) {
      SCOPED_TRACE(kind.builder);
      const Value before = row.value;
      std::string answer;
      const Records records =
          recordsOf([&] { answer = answerOf(kind.rule, row.value, kind.word); });
      const bool claims = std::string(kind.builder) == row.claimedBy;
      EXPECT_EQ(answer, claims ? "yes" : row.answers[kind.rule]);
      EXPECT_EQ(records, kind.rule == kHostClassName ? kNone : row.records);
      EXPECT_EQ(row.value, before);
    }
  }
}

TEST(Recognition, EveryKindIsClaimedByOneRow) {
  for (const Kind& kind : kKinds) {
    std::size_t claims = 0;
    for (const Case& row : cases()) claims += answerOf(kind.rule, row.value, kind.word) == "yes";
    EXPECT_GE(claims, 1U) << kind.builder;
  }
}

TEST(Recognition, AllocatesNothingOfItsOwn) {
  // Long words, so that no text fits a small-string buffer by chance.
  const Value generic = json(
      R"({"className":"LumoControlNode","context":{"type":"aTypeWordOfMoreThanSixteenBytes"}})");
  const Value other = json(R"({"className":"ParagraphNodeOfTheDocument","children":[]})");
  const Value none = json(R"(["a","b"])");
  const auto askAll = [](const Value& value) {
    recognizeByClassName(value, "ColorPickerControlNode");
    recognizeByTypeWord(value, "slider");
    recognizeByTypeWordOrClassName(value, "button");
  };
  askAll(none);  // the logger is made when it is first asked for
  for (const Value* value : {&generic, &other, &none}) {
    EXPECT_EQ(test_support::allocationsOf([&] { askAll(*value); }), 0U);
  }
}

}  // namespace
}  // namespace tessel::build::json::controls::framework
