#include "support/control_fields.hpp"

#include <utility>

namespace test_support {

using foundation::json::Value;

std::vector<Field> commonFields() {
  using Holder = Field::Holder;
  using Place = Field::Place;
  constexpr auto kOptional = Field::Presence::kOptional;
  return {
      {"startColumn",
       FieldType::kColumn,
       3.0,
       "startColumn",
       "3",  //
       {},
       {},
       kOptional,
       Holder::kPosition,
       Place::kControl},
      {"endColumn",
       FieldType::kColumn,
       12.0,
       "endColumn",
       "12",  //
       {},
       {},
       kOptional,
       Holder::kPosition,
       Place::kControl},
      {"controlId",
       FieldType::kText,
       "control-1",
       "id",
       R"("control-1")",  //
       {},
       {},
       kOptional,
       Holder::kNode,
       Place::kControl,
       true},
      {"executionModel",
       FieldType::kText,
       "section",
       "executionModel",
       R"("section")",
       {"Found the executionModel property"},
       {"Set the executionModel property"}},
      {"text",
       FieldType::kText,
       "Shown",
       "label",
       R"("Shown")",
       {"Found the label property"},
       {"Set the label property"}},
      {"text",
       FieldType::kText,
       "x = 1",
       "code",
       R"("x = 1")",
       {"Found the code property"},
       {"Set the code property"},
       kOptional,
       Holder::kRecord,
       Place::kControl},
  };
}

std::vector<Field> booleanFields() {
  return {
      defaultValueField(FieldType::kFlag, true, "true"),
      {"defaultValueLinkedVariable",
       FieldType::kText,
       "on",
       "defaultLinkedVariable",
       R"("on")",
       {"Found the defaultValueLinkedVariable property"},
       {"Set the defaultValueLinkedVariable property"}},
  };
}

std::vector<std::string> booleanProperties() {
  return {"defaultValue", "defaultLinkedVariable"};
}

std::vector<Field> numericFields() {
  return {
      {"executionOn",
       FieldType::kText,
       "release",
       "executeOn",
       R"("release")",
       {"Found the executionOn property"},
       {"Set the executionOn property"}},
      {"minimum",
       FieldType::kNumber,
       -2.5,
       "min",
       "-2.5",
       {"Found the min property"},
       {"Set the min property"}},
      {"maximum",
       FieldType::kNumber,
       40.0,
       "max",
       "40",
       {"Found the max property"},
       {"Set the max property"}},
      {"step",
       FieldType::kNumber,
       0.125,
       "step",
       "0.125",
       {"Found the step property"},
       {"Set the step property"}},
      {"defaultValueLinkedVariable",
       FieldType::kText,
       "d",
       "defaultLinkedVariable",
       R"("d")",
       {"Found the defaultValueLinkedVariable property"},
       {"Set the defaultValueLinkedVariable property"}},
      {"minLinkedVariable",
       FieldType::kText,
       "lo",
       "minimumLinkedVariable",
       R"("lo")",
       {"Found the minLinkedVariable property"},
       {"Set the minLinkedVariable property"}},
      // Meant: the found-record comes a second time where others have a set-record.
      {"maxLinkedVariable",
       FieldType::kText,
       "hi",
       "maximumLinkedVariable",
       R"("hi")",
       {"Found the maxLinkedVariable property"},
       {"Found the maxLinkedVariable property"}},
      {"stepLinkedVariable",
       FieldType::kText,
       "by",
       "stepLinkedVariable",
       R"("by")",
       {"Found the stepLinkedVariable property"},
       {"Set the stepLinkedVariable property"}},
  };
}

std::vector<std::string> numericProperties() {
  return {"executeOn",
          "min",
          "max",
          "step",
          "defaultLinkedVariable",
          "minimumLinkedVariable",
          "maximumLinkedVariable",
          "stepLinkedVariable",
          "defaultValue"};
}

Field defaultValueField(FieldType type, Value sample, std::string exported) {
  return {"defaultValue",
          type,
          std::move(sample),
          "defaultValue",
          std::move(exported),
          {"Found the defaultValue property"},
          {"Set the defaultValue property"}};
}

Field requiredText(std::string key, std::string sample, std::string setRecord) {
  std::string exported = '"' + sample + '"';
  return {key, FieldType::kText,       Value(std::move(sample)),  key, std::move(exported),
          {},  {std::move(setRecord)}, Field::Presence::kRequired};
}

std::vector<Field> with(std::vector<Field> fields, Field last) {
  fields.push_back(std::move(last));
  return fields;
}

const std::vector<Variation>& variationsOf(FieldType type) {
  static const std::vector<Variation> texts = {
      {"empty", "", R"("")"},
      {"umlauts", "Größe Übermaß", R"("Größe Übermaß")"},
      {"beyond the basic plane", "los \xF0\x9F\x9A\x80", "\"los \xF0\x9F\x9A\x80\""},
      {"white space is kept", " a ", R"(" a ")"},
      {"a zero character is text", std::string("a\0b", 3), R"("a\u0000b")"},
  };
  static const std::vector<Variation> numbers = {
      {"zero", 0.0, "0"},
      {"minus zero", -0.0, "-0"},
      {"negative", -7.25, "-7.25"},
      {"fraction", 0.1, "0.1"},
      {"largest", 1.7976931348623157e308, "1.7976931348623157e+308"},
      {"smallest", -5e-324, "-5e-324"},
  };
  static const std::vector<Variation> columns = {
      {"zero", 0.0, "0"},
      {"fraction, truncated", 3.9, "3"},
      {"negative fraction, truncated toward zero", -0.5, "0"},
      {"negative, as two's complement", -1.0, "18446744073709551615"},
      {"2^63", 9223372036854775808.0, "9223372036854775808"},
      {"largest double below 2^64", 18446744073709549568.0, "18446744073709549568"},
  };
  static const std::vector<Variation> flags = {
      {"false", false, "false"},
      {"true", true, "true"},
  };
  static const std::vector<Variation> none;
  switch (type) {
    case FieldType::kText:
      return texts;
    case FieldType::kNumber:
      return numbers;
    case FieldType::kColumn:
      return columns;
    case FieldType::kFlag:
      return flags;
    case FieldType::kList:
      break;
  }
  return none;
}

}  // namespace test_support
