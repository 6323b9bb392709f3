#include <gtest/gtest.h>

#include <string>

#include "support/rows.hpp"

namespace tessel::build::json::controls {
namespace {

using test_support::expectClaims;
using test_support::expectRows;
using test_support::kDump;
using test_support::Row;

const std::string kBuilder = "SliderNodeBuilderImpl";

TEST(SliderBuilder, SetsItsFieldsInReadingOrder) {
  expectRows(
      kBuilder,
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
           .record(R"({"min":10,"max":0,"step":-1})")
           .records({"Found the min property", "Set the min property", "Found the max property",
                     "Set the max property", "Found the step property", "Set the step property"}),
       Row("a step that is null: the bounds stay")
           .data(R"({"minimum":0,"maximum":1,"step":null})")
           .record(R"({"min":0,"max":1})")
           .error("invalid conversion: null to double")
           .records({"Found the min property", "Set the min property", "Found the max property",
                     "Set the max property", "Found the step property"}),
       Row("a linked maximum that fails has one record")
           .data(R"({"maxLinkedVariable":3})")
           .error("invalid conversion: double to string")
           .records({"Found the maxLinkedVariable property"}),
       Row("the words of the records are no keys").data(R"({"min":1,"max":2})")});
}

TEST(SliderBuilder, IsRecognisedByItsTypeWordOnly) {
  expectClaims(kBuilder, {R"({"className":"LumoControlNode","context":{"type":"slider"}})"},
               {R"({"className":"LumoControlNode","context":{"type":"rangeSlider"}})",
                R"({"className":"SliderControlNode"})"});
}

}  // namespace
}  // namespace tessel::build::json::controls
