#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "control_kinds.hpp"
#include "controls/control_builders.hpp"
#include "support/control_fields.hpp"
#include "support/json.hpp"

namespace tessel::build::json::controls {

using test_support::buildWith;
using test_support::ControlKind;
using test_support::expectRows;
using test_support::FieldType;
using test_support::json;
using test_support::outcomeOf;
using test_support::Recognition;
using test_support::Records;
using test_support::recordsOf;

ControlKind colorPickerKind() {
  return {"ColorPicker",
          std::make_shared<ColorPickerBuilderImpl>(),
          Recognition::kClassName,
          "ColorPickerControlNode",
          "Checking if can build ColorPicker",
          "Starting to build a ColorPicker using the incoming JSON below",
          "ColorPickerNode",
          "colorPickerData",
          "ColorPickerData",
          true,
          {test_support::requiredText("colorFormat", "hex", "Set the colorFormat property"),
           test_support::defaultValueField(FieldType::kText, "#ff8800", R"("#ff8800")")},
          {"colorFormat", "defaultValue"},
          {}};
}

namespace {

TEST(ColorPickerBuilder, BuildsWithIdAndPositionOnlyWhereThereIsNoContextOrNoData) {
  struct Row {
    const char* description;
    Value value;
    Records records;
  };
  const Row rows[] = {
      {"no context", json(R"({"className":"ColorPickerControlNode","text":"x = 1"})"), {}},
      {"no data",
       json(R"({"className":"ColorPickerControlNode","text":"x = 1","context":{}})"),
       {"Found the context property"}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.description);
    EXPECT_EQ(buildWith(ColorPickerBuilderImpl(), row.value),
              outcomeOf(colorPickerKind(), row.value, "", "", row.records));
  }
}

TEST(ColorPickerBuilder, BuildsEveryRow) {
  expectRows(colorPickerKind(),
             {
                 {"data that is a number: the host is asked for the format",
                  "7",
                  "",
                  "invalid conversion: double to object",
                  {}},
                 {"format and default value",
                  R"({"colorFormat":"rgb","defaultValue":"[1 0 0]"})",
                  R"(,"colorFormat":"rgb","defaultValue":"[1 0 0]")",
                  "",
                  {"Set the colorFormat property", "Found the defaultValue property",
                   "Set the defaultValue property"}},
                 {"empty default value",
                  R"({"colorFormat":"rgb","defaultValue":""})",
                  R"(,"colorFormat":"rgb","defaultValue":"")",
                  "",
                  {"Set the colorFormat property", "Found the defaultValue property",
                   "Set the defaultValue property"}},
                 {"what is no colour passes through",
                  R"({"colorFormat":"größe","defaultValue":"\ud83d\ude80"})",
                  ",\"colorFormat\":\"größe\",\"defaultValue\":\"\xF0\x9F\x9A\x80\"",
                  "",
                  {"Set the colorFormat property", "Found the defaultValue property",
                   "Set the defaultValue property"}},
                 {"the format is required, and read before the default value",
                  R"({"defaultValue":"#fff"})",
                  "",
                  "invalid conversion: undefined to string",
                  {}},
                 {"a format that is a number; the common fields stay",
                  R"({"text":"Paint","colorFormat":1})",
                  R"(,"label":"Paint")",
                  "invalid conversion: double to string",
                  {"Found the label property", "Set the label property"}},
                 {"another picker's format is no key",
                  R"({"displayFormat":"hex"})",
                  "",
                  "invalid conversion: undefined to string",
                  {}},
                 {"a default value that is a list",
                  R"({"colorFormat":"rgb","defaultValue":[1,0,0]})",
                  R"(,"colorFormat":"rgb")",
                  "invalid conversion: array to string",
                  {"Set the colorFormat property", "Found the defaultValue property"}},
             });
}

TEST(ColorPickerBuilder, RefusesAListWithARecord) {
  bool answer = true;
  EXPECT_EQ(recordsOf([&] { answer = ColorPickerBuilderImpl().canBuild(json("[]")); }),
            (Records{"Checking if can build ColorPicker", "Incoming JSON was not an Object"}));
  EXPECT_FALSE(answer);
}

}  // namespace
}  // namespace tessel::build::json::controls
