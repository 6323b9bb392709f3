// The colour picker and the date picker.

#include <gtest/gtest.h>

#include <string>

#include "support/rows.hpp"

namespace tessel::build::json::controls {
namespace {

using test_support::expectRows;
using test_support::kDump;
using test_support::Row;

const std::string kColorPicker = "ColorPickerBuilderImpl";
const std::string kDatePicker = "DatePickerBuilderImpl";

TEST(ColorPickerBuilder, SetsItsFormatAndItsDefaultValue) {
  expectRows(
      kColorPicker,
      {Row("every key of its own")
           .object(R"({"className":"ColorPickerControlNode","context":{"data":{"colorFormat":"höx",
               "defaultValue":""}}})")
           .asked("Checking if can build ColorPicker")
           .node(R"({"class":"document::gxzero::ColorPickerNode",
               "position":{"class":"document::gxzero::LumoControlPosition"},
               "colorPickerData":{"class":"lumocode::contentmodel::gxzero::ColorPickerData",
               "colorFormat":"höx","defaultValue":""}})")
           // Irregular by contract: the format has this one record, whatever its key.
           .records({"Starting to build a ColorPicker using the incoming JSON below", kDump,
                     "Found the context property", "Found the context.data property",
                     "Set the colorFormat property", "Found the defaultValue property",
                     "Set the defaultValue property"}),
       Row("without a context nothing is read")
           .object(R"({"className":"ColorPickerControlNode","text":"x = 1"})")
           .node(R"({"class":"document::gxzero::ColorPickerNode",
               "position":{"class":"document::gxzero::LumoControlPosition"},
               "colorPickerData":{"class":"lumocode::contentmodel::gxzero::ColorPickerData"}})")
           .records({"Starting to build a ColorPicker using the incoming JSON below", kDump}),
       Row("the format is required")
           .data(R"({"defaultValue":"a"})")
           .error("invalid conversion: undefined to string"),
       Row("data that is a number: the host is asked for the format")
           .data("7")
           .error("invalid conversion: double to object"),
       Row("the common fields come before a format that fails")
           .data(R"({"text":"Shown","colorFormat":null})")
           .dataObject(R"({"label":"Shown"})")
           .error("invalid conversion: null to string")
           .records({"Found the label property", "Set the label property"}),
       Row("a default value that is a number: the format stays")
           .data(R"({"colorFormat":"höx","defaultValue":1})")
           .dataObject(R"({"colorFormat":"höx"})")
           .error("invalid conversion: double to string")
           .records({"Set the colorFormat property", "Found the defaultValue property"})});
}

TEST(DatePickerBuilder, SetsItsFormatAndItsDefaultValue) {
  expectRows(
      kDatePicker,
      {Row("every key of its own")
           .object(
               R"({"className":"DatePickerControlNode","context":{"data":{"displayFormat":"dd.MM.yyyy",
               "defaultValue":""}}})")
           .asked("Checking if can build DatePicker")
           .node(R"({"class":"document::gxzero::DatePickerNode",
               "position":{"class":"document::gxzero::LumoControlPosition"},
               "datePickerData":{"class":"lumocode::contentmodel::gxzero::DatePickerData",
               "displayFormat":"dd.MM.yyyy","defaultValue":""}})")
           // Irregular by contract: the format has this one record, whatever its key.
           .records({"Starting to build a DatePicker using the incoming JSON below", kDump,
                     "Found the context property", "Found the context.data property",
                     "Set the colorFormat property", "Found the defaultValue property",
                     "Set the defaultValue property"})});
}

}  // namespace
}  // namespace tessel::build::json::controls
