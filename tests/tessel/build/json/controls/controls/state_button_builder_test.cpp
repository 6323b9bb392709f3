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
using test_support::json;
using test_support::outcomeOf;
using test_support::Recognition;

ControlKind stateButtonKind() {
  return {"StateButton",
          std::make_shared<StateButtonBuilderImpl>(),
          Recognition::kClassName,
          "StateButtonControlNode",
          "Checking if can build StateButton",
          "Starting to build a StateButton using the incoming JSON below",
          "StateButtonNode",
          "stateButtonData",
          "StateButtonData",
          true,
          test_support::booleanFields(),
          test_support::booleanProperties(),
          {}};
}

namespace {

using Names = std::vector<std::string>;

TEST(StateButtonBuilder, BuildsWithIdAndPositionOnlyWhereThereIsNoContext) {
  const Value bare = json(R"({"className":"StateButtonControlNode"})");
  EXPECT_EQ(claimantsOf(bare), Names{"StateButton"});
  EXPECT_EQ(buildWith(StateButtonBuilderImpl(), bare),
            outcomeOf(stateButtonKind(), bare, "", "", {}));

  // Meant: the code is not read either.
  const Value withCode = json(R"({"className":"StateButtonControlNode","text":"x = 1"})");
  EXPECT_EQ(buildWith(StateButtonBuilderImpl(), withCode),
            outcomeOf(stateButtonKind(), withCode, "", "", {}));
}

TEST(StateButtonBuilder, BuildsEveryRow) {
  expectRows(stateButtonKind(),
             {
                 {"true",
                  R"({"defaultValue":true})",
                  R"(,"defaultValue":true)",
                  "",
                  {"Found the defaultValue property", "Set the defaultValue property"}},
                 {"0 is no flag",
                  R"({"defaultValue":0})",
                  "",
                  "invalid conversion: double to bool",
                  {"Found the defaultValue property"}},
                 {"empty linked variable",
                  R"({"defaultValueLinkedVariable":""})",
                  R"(,"defaultLinkedVariable":"")",
                  "",
                  {"Found the defaultValueLinkedVariable property",
                   "Set the defaultValueLinkedVariable property"}},
             });
}

TEST(StateButtonBuilder, IsMeantNeverToBeRecognisedByATypeWord) {
  for (const char* word : {"stateButton", "StateButton", "statebutton", "StateButtonControlNode"}) {
    SCOPED_TRACE(word);
    const std::string context = R"("context":{"type":")" + std::string(word) + R"("})";
    EXPECT_EQ(claimantsOf(json(R"({"className":"LumoControlNode",)" + context + "}")), Names{});
  }
}

TEST(StateButtonBuilder, ItsContextIsNotLookedAtInRecognition) {
  for (const char* context : {"7", "null", "{}", R"({"type":"checkBox"})", R"({"type":3})",
                              R"({"data":{"defaultValue":true}})"}) {
    SCOPED_TRACE(context);
    const Value control =
        json(R"({"className":"StateButtonControlNode","context":)" + std::string(context) + "}");
    EXPECT_EQ(claimantsOf(control), Names{"StateButton"});
  }
}

}  // namespace
}  // namespace tessel::build::json::controls
