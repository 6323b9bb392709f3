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

ControlKind checkBoxKind() {
  return {"CheckBox",
          std::make_shared<CheckBoxBuilderImpl>(),
          Recognition::kTypeWord,
          "checkBox",
          "Checking if can build CheckBox",
          "Starting to build a CheckBox using the incoming JSON below",
          "CheckBoxNode",
          "checkBoxData",
          "CheckboxData",
          true,
          test_support::booleanFields(),
          test_support::booleanProperties(),
          {}};
}

namespace {

using Names = std::vector<std::string>;

TEST(CheckBoxBuilder, BuildsADefaultValueWithoutALinkedVariable) {
  const Value control = json(
      R"({"className":"LumoControlNode","context":{"type":"checkBox","data":{"defaultValue":true}}})");
  EXPECT_EQ(claimantsOf(control), Names{"CheckBox"});
  EXPECT_EQ(buildWith(CheckBoxBuilderImpl(), control),
            outcomeOf(checkBoxKind(), control, R"(,"defaultValue":true)", "",
                      {"Found the context property", "Found the context.data property",
                       "Found the defaultValue property", "Set the defaultValue property"}));
}

TEST(CheckBoxBuilder, BuildsEveryRow) {
  expectRows(
      checkBoxKind(),
      {
          {"false is stored",
           R"({"defaultValue":false})",
           R"(,"defaultValue":false)",
           "",
           {"Found the defaultValue property", "Set the defaultValue property"}},
          {"1 is no flag; the linked variable is not read",
           R"({"defaultValue":1,"defaultValueLinkedVariable":"on"})",
           "",
           "invalid conversion: double to bool",
           {"Found the defaultValue property"}},
          {"the text true is no flag",
           R"({"defaultValue":"true"})",
           "",
           "invalid conversion: string to bool",
           {"Found the defaultValue property"}},
          {"null is no flag",
           R"({"defaultValue":null})",
           "",
           "invalid conversion: null to bool",
           {"Found the defaultValue property"}},
          {"linked variable alone",
           R"({"defaultValueLinkedVariable":"on"})",
           R"(,"defaultLinkedVariable":"on")",
           "",
           {"Found the defaultValueLinkedVariable property",
            "Set the defaultValueLinkedVariable property"}},
          {"empty linked variable",
           R"({"defaultValueLinkedVariable":""})",
           R"(,"defaultLinkedVariable":"")",
           "",
           {"Found the defaultValueLinkedVariable property",
            "Set the defaultValueLinkedVariable property"}},
          {"non-ASCII linked variable",
           R"({"defaultValueLinkedVariable":"größe"})",
           R"(,"defaultLinkedVariable":"größe")",
           "",
           {"Found the defaultValueLinkedVariable property",
            "Set the defaultValueLinkedVariable property"}},
          {"a default value and a linked variable",
           R"({"defaultValueLinkedVariable":"on","defaultValue":true})",
           R"(,"defaultValue":true,"defaultLinkedVariable":"on")",
           "",
           {"Found the defaultValue property", "Set the defaultValue property",
            "Found the defaultValueLinkedVariable property",
            "Set the defaultValueLinkedVariable property"}},
          {"a linked variable that is a flag: the default value stays",
           R"({"defaultValueLinkedVariable":false,"defaultValue":true})",
           R"(,"defaultValue":true)",
           "invalid conversion: bool to string",
           {"Found the defaultValue property", "Set the defaultValue property",
            "Found the defaultValueLinkedVariable property"}},
          {"a failure in the common fields ends it before the default value",
           R"({"executionModel":1,"defaultValue":true})",
           "",
           "invalid conversion: double to string",
           {"Found the executionModel property"}},
          {"another kind's linked variable is no key", R"({"linkedVariable":"on"})", "", "", {}},
      });
}

TEST(CheckBoxBuilder, ItsTypeWordIsNoClassName) {
  EXPECT_EQ(claimantsOf(json(R"({"className":"checkBox"})")), Names{});
  EXPECT_EQ(claimantsOf(json(R"({"className":"CheckBoxControlNode"})")), Names{});
}

TEST(CheckBoxBuilder, DataWithoutATypeIsAnErrorOfTheGenericControls) {
  const Value control =
      json(R"({"className":"LumoControlNode","context":{"data":{"defaultValue":true}}})");
  const std::string error = ": invalid conversion: undefined to string";
  EXPECT_EQ(claimantsOf(control), (Names{"Button" + error, "CheckBox" + error, "ComboBox" + error,
                                         "EditField" + error, "Slider" + error}));
}

}  // namespace
}  // namespace tessel::build::json::controls
