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

ControlKind spinnerKind() {
  return {"Spinner",
          std::make_shared<SpinnerNodeBuilderImpl>(),
          Recognition::kClassName,
          "SpinnerControlNode",
          "Checking if can build SpinnerNode",
          "Starting to build a SpinnerNode using the incoming JSON below",
          "SpinnerNode",
          "spinnerData",
          "SpinnerData",
          true,
          test_support::with(test_support::numericFields(),
                             test_support::defaultValueField(FieldType::kNumber, 11.0, "11")),
          test_support::numericProperties(),
          {}};
}

namespace {

using Names = std::vector<std::string>;

TEST(SpinnerBuilder, BuildsEveryRow) {
  expectRows(spinnerKind(),
             {
                 {"bounds, step and default value",
                  R"({"minimum":0,"maximum":10,"step":0.5,"defaultValue":3})",
                  R"(,"min":0,"max":10,"step":0.5,"defaultValue":3)",
                  "",
                  {"Found the min property", "Set the min property", "Found the max property",
                   "Set the max property", "Found the step property", "Set the step property",
                   "Found the defaultValue property", "Set the defaultValue property"}},
                 {"a default value that is a flag",
                  R"({"defaultValue":true})",
                  "",
                  "invalid conversion: bool to double",
                  {"Found the defaultValue property"}},
             });
}

TEST(SpinnerBuilder, IsRecognisedByItsClassNameOnly) {
  EXPECT_EQ(claimantsOf(json(R"({"className":"SpinnerControlNode","context":{"type":"slider"}})")),
            Names{"Spinner"});
  EXPECT_EQ(claimantsOf(json(R"({"className":"spinner"})")), Names{});
  EXPECT_EQ(claimantsOf(json(R"({"className":"SpinnerNode"})")), Names{});
}

}  // namespace
}  // namespace tessel::build::json::controls
