// The slider, the spinner and the range slider.

#include <gtest/gtest.h>

#include <string>

#include "support/rows.hpp"

namespace tessel::build::json::controls {
namespace {

using test_support::expectRows;
using test_support::kDump;
using test_support::Row;

const std::string kSlider = "SliderNodeBuilderImpl";
const std::string kSpinner = "SpinnerNodeBuilderImpl";
const std::string kRangeSlider = "RangeSliderNodeBuilderImpl";

TEST(SliderBuilder, SetsItsFieldsInReadingOrder) {
  expectRows(
      kSlider,
      {Row("keys of each part of it")
           .object(R"({"className":"LumoControlNode","text":"x = 1","context":{"type":"slider",
               "data":{"text":"Speed","executionOn":"release","minimum":0,"maxLinkedVariable":"hi",
               "defaultValue":6}}})")
           .asked("Checking if can build SliderNode")
           .node(R"({"class":"document::gxzero::SliderNode",
               "position":{"class":"document::gxzero::LumoControlPosition"},
               "sliderData":{"class":"lumocode::contentmodel::gxzero::SliderData","label":"Speed",
               "code":"x = 1","executeOn":"release","min":0,"maximumLinkedVariable":"hi",
               "defaultValue":6}})")
           .records({"Starting to build a SliderNode using the incoming JSON below", kDump,
                     "Found the context property", "Found the context.data property",
                     "Found the label property", "Set the label property",
                     "Found the code property", "Set the code property",
                     "Found the executionOn property", "Set the executionOn property",
                     "Found the min property", "Set the min property",
                     "Found the maxLinkedVariable property", "Found the maxLinkedVariable property",
                     "Found the defaultValue property", "Set the defaultValue property"}),
       Row("without data nothing is read, not even the code")
           .object(R"({"className":"LumoControlNode","text":"x = 1",
               "context":{"type":"slider"}})")
           .node(R"({"class":"document::gxzero::SliderNode",
               "position":{"class":"document::gxzero::LumoControlPosition"},
               "sliderData":{"class":"lumocode::contentmodel::gxzero::SliderData"}})")
           .records({"Starting to build a SliderNode using the incoming JSON below", kDump,
                     "Found the context property"}),
       Row("a minimum above the maximum and a negative step are stored unchanged")
           .data(R"({"minimum":10,"maximum":0,"step":-1})")
           .dataObject(R"({"min":10,"max":0,"step":-1})")
           .records({"Found the min property", "Set the min property", "Found the max property",
                     "Set the max property", "Found the step property", "Set the step property"}),
       Row("a linked maximum that fails has one record")
           .data(R"({"maxLinkedVariable":3})")
           .error("invalid conversion: double to string")
           .records({"Found the maxLinkedVariable property"}),
       Row("the words of the records are no keys").data(R"({"min":1,"max":2})")});
}

TEST(SpinnerBuilder, SetsItsFieldsInReadingOrder) {
  expectRows(
      kSpinner,
      {Row("bounds, step and default value")
           .object(R"({"className":"SpinnerControlNode","context":{"data":{"minimum":0,
               "maximum":10,"step":0.5,"defaultValue":3}}})")
           .asked("Checking if can build SpinnerNode")
           .node(R"({"class":"document::gxzero::SpinnerNode",
               "position":{"class":"document::gxzero::LumoControlPosition"},
               "spinnerData":{"class":"lumocode::contentmodel::gxzero::SpinnerData",
               "min":0,"max":10,"step":0.5,"defaultValue":3}})")
           .records({"Starting to build a SpinnerNode using the incoming JSON below", kDump,
                     "Found the context property", "Found the context.data property",
                     "Found the min property", "Set the min property", "Found the max property",
                     "Set the max property", "Found the step property", "Set the step property",
                     "Found the defaultValue property", "Set the defaultValue property"})});
}

TEST(RangeSliderBuilder, ItsDefaultValueIsTextByContract) {
  expectRows(
      kRangeSlider,
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
           .dataObject(R"({"executeOn":"drag","min":0,"max":10,"step":1,"defaultLinkedVariable":"d",
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
                     "Found the defaultValue property"})});
}

}  // namespace
}  // namespace tessel::build::json::controls
