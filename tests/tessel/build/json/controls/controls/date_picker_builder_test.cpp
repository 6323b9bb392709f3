#include <gtest/gtest.h>

#include <string>

#include "support/rows.hpp"

namespace tessel::build::json::controls {
namespace {

using test_support::expectClaims;
using test_support::expectRows;
using test_support::kDump;
using test_support::Row;

const std::string kBuilder = "DatePickerBuilderImpl";

TEST(DatePickerBuilder, SetsItsFormatAndItsDefaultValue) {
  expectRows(
      kBuilder,
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
                     "Set the defaultValue property"}),
       Row("without a context nothing is read")
           .object(R"({"className":"DatePickerControlNode","text":"x = 1"})")
           .node(R"({"class":"document::gxzero::DatePickerNode",
               "position":{"class":"document::gxzero::LumoControlPosition"},
               "datePickerData":{"class":"lumocode::contentmodel::gxzero::DatePickerData"}})")
           .records({"Starting to build a DatePicker using the incoming JSON below", kDump}),
       Row("a default value that is a number: the format stays")
           .data(R"({"displayFormat":"dd.MM.yyyy","defaultValue":1})")
           .record(R"({"displayFormat":"dd.MM.yyyy"})")
           .error("invalid conversion: double to string")
           .records({"Set the colorFormat property", "Found the defaultValue property"})});
}

TEST(DatePickerBuilder, IsRecognisedByItsClassNameOnly) {
  expectClaims(kBuilder, {R"({"className":"DatePickerControlNode","context":{"type":"button"}})"},
               {R"({"className":"LumoControlNode","context":{"type":"datePicker"}})"});
}

}  // namespace
}  // namespace tessel::build::json::controls
