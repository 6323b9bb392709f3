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

ControlKind sliderKind() {
  return {"Slider",
          std::make_shared<SliderNodeBuilderImpl>(),
          Recognition::kTypeWord,
          "slider",
          "Checking if can build SliderNode",
          "Starting to build a SliderNode using the incoming JSON below",
          "SliderNode",
          "sliderData",
          "SliderData",
          true,
          test_support::with(test_support::numericFields(),
                             test_support::defaultValueField(FieldType::kNumber, 7.5, "7.5")),
          test_support::numericProperties(),
          {}};
}

namespace {

using Names = std::vector<std::string>;

TEST(SliderBuilder, IsRecognisedByItsTypeWordOnly) {
  EXPECT_EQ(claimantsOf(json(R"({"className":"LumoControlNode","context":{"type":"slider"}})")),
            Names{"Slider"});
  for (const char* word : {"rangeSlider", "spinner", "Slider", "slider ", ""}) {
    SCOPED_TRACE(word);
    const std::string context = R"("context":{"type":")" + std::string(word) + R"("})";
    EXPECT_EQ(claimantsOf(json(R"({"className":"LumoControlNode",)" + context + "}")), Names{});
  }
  EXPECT_EQ(claimantsOf(json(R"({"className":"SliderControlNode"})")), Names{});
}

TEST(SliderBuilder, WithoutContextNothingOfTheRecordIsFilledNotEvenTheCode) {
  const Value control = json(R"({"className":"LumoControlNode","text":"x = 1"})");
  EXPECT_EQ(buildWith(SliderNodeBuilderImpl(), control),
            outcomeOf(sliderKind(), control, "", "", {}));
}

TEST(SliderBuilder, WithoutDataNothingOfTheRecordIsFilledNotEvenTheCode) {
  const Value control =
      json(R"({"className":"LumoControlNode","text":"x = 1","context":{"type":"slider"}})");
  EXPECT_EQ(buildWith(SliderNodeBuilderImpl(), control),
            outcomeOf(sliderKind(), control, "", "", {"Found the context property"}));
}

TEST(SliderBuilder, WritesTheRecordsOfEveryKeyInReadingOrder) {
  const Value control = json(
      R"({"className":"LumoControlNode","text":"x = 1","context":{"type":"slider","data":{
          "executionModel":"all","text":"Speed","executionOn":"release","minimum":0,"maximum":9,
          "step":3,"defaultValueLinkedVariable":"d","minLinkedVariable":"lo",
          "maxLinkedVariable":"hi","stepLinkedVariable":"by","defaultValue":6}}})");
  EXPECT_EQ(
      buildWith(SliderNodeBuilderImpl(), control),
      outcomeOf(
          sliderKind(), control,
          R"(,"label":"Speed","code":"x = 1","executionModel":"all","executeOn":"release","min":0)"
          R"(,"max":9,"step":3,"defaultLinkedVariable":"d","minimumLinkedVariable":"lo")"
          R"(,"maximumLinkedVariable":"hi","stepLinkedVariable":"by","defaultValue":6)",
          "",
          {"Found the context property",
           "Found the context.data property",
           "Found the executionModel property",
           "Set the executionModel property",
           "Found the label property",
           "Set the label property",
           "Found the code property",
           "Set the code property",
           "Found the executionOn property",
           "Set the executionOn property",
           "Found the min property",
           "Set the min property",
           "Found the max property",
           "Set the max property",
           "Found the step property",
           "Set the step property",
           "Found the defaultValueLinkedVariable property",
           "Set the defaultValueLinkedVariable property",
           "Found the minLinkedVariable property",
           "Set the minLinkedVariable property",
           "Found the maxLinkedVariable property",
           "Found the maxLinkedVariable property",
           "Found the stepLinkedVariable property",
           "Set the stepLinkedVariable property",
           "Found the defaultValue property",
           "Set the defaultValue property"}));
}

TEST(SliderBuilder, TheMaximumsLinkedVariableIsMeantToHaveTwoFoundRecordsAndNoSetRecord) {
  expectRows(sliderKind(),
             {
                 {"set",
                  R"({"maxLinkedVariable":"hi"})",
                  R"(,"maximumLinkedVariable":"hi")",
                  "",
                  {"Found the maxLinkedVariable property", "Found the maxLinkedVariable property"}},
                 {"failed: once",
                  R"({"maxLinkedVariable":3})",
                  "",
                  "invalid conversion: double to string",
                  {"Found the maxLinkedVariable property"}},
             });
}

TEST(SliderBuilder, TheBoundsAreMeantToBeShorterInTheRecordsThanInTheKeys) {
  expectRows(sliderKind(),
             {
                 {"the keys",
                  R"({"minimum":1,"maximum":2})",
                  R"(,"min":1,"max":2)",
                  "",
                  {"Found the min property", "Set the min property", "Found the max property",
                   "Set the max property"}},
                 {"the records' words are no keys", R"({"min":1,"max":2})", "", "", {}},
             });
}

TEST(SliderBuilder, BuildsEveryRow) {
  expectRows(
      sliderKind(),
      {
          {"a minimum above the maximum is stored unchanged",
           R"({"minimum":10,"maximum":0})",
           R"(,"min":10,"max":0)",
           "",
           {"Found the min property", "Set the min property", "Found the max property",
            "Set the max property"}},
          {"a default value out of range and a negative step are stored unchanged",
           R"({"maximum":1,"step":-1,"defaultValue":1000})",
           R"(,"max":1,"step":-1,"defaultValue":1000)",
           "",
           {"Found the max property", "Set the max property", "Found the step property",
            "Set the step property", "Found the defaultValue property",
            "Set the defaultValue property"}},
          {"a minimum that is text",
           R"({"minimum":"0","maximum":1})",
           "",
           "invalid conversion: string to double",
           {"Found the min property"}},
          {"a step that is null: the bounds stay",
           R"({"minimum":0,"maximum":1,"step":null})",
           R"(,"min":0,"max":1)",
           "invalid conversion: null to double",
           {"Found the min property", "Set the min property", "Found the max property",
            "Set the max property", "Found the step property"}},
          {"a default value that is text",
           R"({"defaultValue":"3","step":1})",
           R"(,"step":1)",
           "invalid conversion: string to double",
           {"Found the step property", "Set the step property", "Found the defaultValue property"}},
          {"what starts the code is text of any wording",
           R"({"executionOn":"no such event"})",
           R"(,"executeOn":"no such event")",
           "",
           {"Found the executionOn property", "Set the executionOn property"}},
      });
}

}  // namespace
}  // namespace tessel::build::json::controls
