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

ControlKind rangeSliderKind() {
  return {
      "RangeSlider",
      std::make_shared<RangeSliderNodeBuilderImpl>(),
      Recognition::kClassName,
      "RangeSliderControlNode",
      "Checking if can build RangeSliderNode",
      "Starting to build a RangeSliderNode using the incoming JSON below",
      "RangeSliderNode",
      "rangeSliderData",
      "RangeSliderData",
      true,
      test_support::with(test_support::numericFields(),
                         test_support::defaultValueField(FieldType::kText, "[1 4]", R"("[1 4]")")),
      test_support::numericProperties(),
      {}};
}

namespace {

using Names = std::vector<std::string>;

TEST(RangeSliderBuilder, ItsDefaultValueIsMeantToBeText) {
  expectRows(
      rangeSliderKind(),
      {
          {"text is stored unchanged",
           R"({"defaultValue":"[2 8]"})",
           R"(,"defaultValue":"[2 8]")",
           "",
           {"Found the defaultValue property", "Set the defaultValue property"}},
          {"text that is no range is stored unchanged",
           R"({"defaultValue":" 8..2 "})",
           R"(,"defaultValue":" 8..2 ")",
           "",
           {"Found the defaultValue property", "Set the defaultValue property"}},
          {"a number is an error, after every numeric field was set",
           R"({"defaultValue":2,"executionOn":"drag","minimum":0,"maximum":10,"step":1,
               "defaultValueLinkedVariable":"d","minLinkedVariable":"lo",
               "maxLinkedVariable":"hi","stepLinkedVariable":"by"})",
           R"(,"executeOn":"drag","min":0,"max":10,"step":1,"defaultLinkedVariable":"d")"
           R"(,"minimumLinkedVariable":"lo","maximumLinkedVariable":"hi")"
           R"(,"stepLinkedVariable":"by")",
           "invalid conversion: double to string",
           {"Found the executionOn property", "Set the executionOn property",
            "Found the min property", "Set the min property", "Found the max property",
            "Set the max property", "Found the step property", "Set the step property",
            "Found the defaultValueLinkedVariable property",
            "Set the defaultValueLinkedVariable property", "Found the minLinkedVariable property",
            "Set the minLinkedVariable property", "Found the maxLinkedVariable property",
            "Found the maxLinkedVariable property", "Found the stepLinkedVariable property",
            "Set the stepLinkedVariable property", "Found the defaultValue property"}},
          {"a list of two numbers is an error",
           R"({"defaultValue":[2,8]})",
           "",
           "invalid conversion: array to string",
           {"Found the defaultValue property"}},
      });
}

TEST(RangeSliderBuilder, IsRecognisedByItsClassNameOnly) {
  EXPECT_EQ(claimantsOf(json(R"({"className":"RangeSliderControlNode"})")), Names{"RangeSlider"});
  EXPECT_EQ(claimantsOf(json(R"({"className":"rangeSlider"})")), Names{});
  EXPECT_EQ(claimantsOf(json(R"({"className":"RangeSliderNode"})")), Names{});
}

}  // namespace
}  // namespace tessel::build::json::controls
