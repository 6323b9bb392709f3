#include <gtest/gtest.h>

#include <string>

#include "support/rows.hpp"

namespace tessel::build::json::controls {
namespace {

using test_support::expectClaims;
using test_support::expectRows;
using test_support::kDump;
using test_support::Row;

const std::string kBuilder = "RangeSliderNodeBuilderImpl";

TEST(RangeSliderBuilder, ItsDefaultValueIsTextByContract) {
  expectRows(
      kBuilder,
      {Row("text is stored unchanged")
           .object(R"({"className":"RangeSliderControlNode","context":{"data":{
               "defaultValue":" [2 8]"}}})")
           .asked("Checking if can build RangeSliderNode")
           .node(R"({"class":"document::gxzero::RangeSliderNode",
               "position":{"class":"document::gxzero::LumoControlPosition"},
               "rangeSliderData":{"class":"lumocode::contentmodel::gxzero::RangeSliderData",
               "defaultValue":" [2 8]"}})")
           .records({"Starting to build a RangeSliderNode using the incoming JSON below", kDump,
                     "Found the context property", "Found the context.data property",
                     "Found the defaultValue property", "Set the defaultValue property"}),
       Row("a number is an error, after every numeric field was set")
           .data(R"({"defaultValue":2,"executionOn":"drag","minimum":0,"maximum":10,"step":1,
               "defaultValueLinkedVariable":"d","minLinkedVariable":"lo",
               "maxLinkedVariable":"hi","stepLinkedVariable":"by"})")
           .record(R"({"executeOn":"drag","min":0,"max":10,"step":1,"defaultLinkedVariable":"d",
               "minimumLinkedVariable":"lo","maximumLinkedVariable":"hi",
               "stepLinkedVariable":"by"})")
           .error("invalid conversion: double to string")
           .records({"Found the executionOn property", "Set the executionOn property",
                     "Found the min property", "Set the min property", "Found the max property",
                     "Set the max property", "Found the step property", "Set the step property",
                     "Found the defaultValueLinkedVariable property",
                     "Set the defaultValueLinkedVariable property",
                     "Found the minLinkedVariable property", "Set the minLinkedVariable property",
                     "Found the maxLinkedVariable property", "Found the maxLinkedVariable property",
                     "Found the stepLinkedVariable property", "Set the stepLinkedVariable property",
                     "Found the defaultValue property"}),
       Row("a list of two numbers is an error")
           .data(R"({"defaultValue":[2,8]})")
           .error("invalid conversion: array to string")
           .records({"Found the defaultValue property"})});
}

TEST(RangeSliderBuilder, IsRecognisedByItsClassNameOnly) {
  expectClaims(kBuilder, {R"({"className":"RangeSliderControlNode"})"},
               {R"({"className":"rangeSlider"})"});
}

}  // namespace
}  // namespace tessel::build::json::controls
