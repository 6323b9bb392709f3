#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "control_kinds.hpp"
#include "controls/control_builders.hpp"
#include "support/control_fields.hpp"
#include "support/json.hpp"

namespace tessel::build::json::controls {

using test_support::ControlKind;
using test_support::expectRows;
using test_support::FieldType;
using test_support::json;
using test_support::Recognition;
using test_support::Records;
using test_support::recordsOf;

ControlKind datePickerKind() {
  return {"DatePicker",
          std::make_shared<DatePickerBuilderImpl>(),
          Recognition::kHostClassName,
          "DatePickerControlNode",
          "Checking if can build DatePicker",
          "Starting to build a DatePicker using the incoming JSON below",
          "DatePickerNode",
          "datePickerData",
          "DatePickerData",
          true,
          // Meant: the record names the other picker's format.
          {test_support::requiredText("displayFormat", "d.M.y", "Set the colorFormat property"),
           test_support::defaultValueField(FieldType::kText, "1.2.2030", R"("1.2.2030")")},
          {"displayFormat", "defaultValue"},
          {}};
}

namespace {

TEST(DatePickerBuilder, IsMeantToWriteSetTheColorFormatProperty) {
  expectRows(datePickerKind(), {{"a display format and no default value",
                                 R"({"displayFormat":"dd/MM"})",
                                 R"(,"displayFormat":"dd/MM")",
                                 "",
                                 {"Set the colorFormat property"}}});
}

TEST(DatePickerBuilder, BuildsEveryRow) {
  expectRows(datePickerKind(),
             {
                 {"data that is a number: the host is asked for the format",
                  "7",
                  "",
                  "invalid conversion: double to object",
                  {}},
                 {"what is no date passes through",
                  R"({"displayFormat":"","defaultValue":"größe"})",
                  R"(,"displayFormat":"","defaultValue":"größe")",
                  "",
                  {"Set the colorFormat property", "Found the defaultValue property",
                   "Set the defaultValue property"}},
                 {"empty default value",
                  R"({"displayFormat":"y","defaultValue":""})",
                  R"(,"displayFormat":"y","defaultValue":"")",
                  "",
                  {"Set the colorFormat property", "Found the defaultValue property",
                   "Set the defaultValue property"}},
                 {"the display format is required",
                  R"({"defaultValue":"1.2.2030"})",
                  "",
                  "invalid conversion: undefined to string",
                  {}},
                 {"the format that the record names is no key",
                  R"({"colorFormat":"y"})",
                  "",
                  "invalid conversion: undefined to string",
                  {}},
                 {"a default value that is a number",
                  R"({"displayFormat":"y","defaultValue":2030})",
                  R"(,"displayFormat":"y")",
                  "invalid conversion: double to string",
                  {"Set the colorFormat property", "Found the defaultValue property"}},
             });
}

TEST(DatePickerBuilder, RefusesAListWithoutARecordOfItsOwn) {
  bool answer = true;
  EXPECT_EQ(recordsOf([&] { answer = DatePickerBuilderImpl().canBuild(json("[]")); }),
            Records{"Checking if can build DatePicker"});
  EXPECT_FALSE(answer);
}

}  // namespace
}  // namespace tessel::build::json::controls
