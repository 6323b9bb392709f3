#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "control_kinds.hpp"
#include "controls/control_builders.hpp"
#include "support/control_fields.hpp"
#include "support/json.hpp"

namespace tessel::build::json::controls {

using test_support::Alternative;
using test_support::alternativesExcept;
using test_support::buildWith;
using test_support::ControlCase;
using test_support::ControlKind;
using test_support::expectRows;
using test_support::Field;
using test_support::FieldType;
using test_support::json;
using test_support::Recognition;
using test_support::Records;
using test_support::recordsOf;

namespace {

/// An edit field, with a default value of one type.
ControlKind editField(const std::string& valueType, Field defaultValue,
                      const std::string& elementClass) {
  defaultValue.key = "defaultValue";
  defaultValue.property = "defaultValue";
  // Meant: the record names the element that is made, not the key.
  defaultValue.before = {"Found the defaultValueData property"};
  defaultValue.holder = Field::Holder::kElement;
  return {"EditField",
          std::make_shared<EditFieldBuilderImpl>(),
          Recognition::kTypeWord,
          "editField",
          "Checking if can build ComboBox",  // meant: the combo box's words
          "Starting to build a editFieldNode using the incoming JSON below",
          "EditFieldNode",
          "editFieldData",
          "EditFieldData",
          true,
          {
              {"valueType",
               FieldType::kText,
               valueType,
               "valueType",
               '"' + valueType + '"',
               {"Found the valueType property"},
               {"Set the valueType property"}},
              defaultValue,
              {"defaultValueLinkedVariable",
               FieldType::kText,
               "v",
               "defaultLinkedVariable",
               R"("v")",
               {},
               {"Set the defaultValue property"},
               Field::Presence::kReadWithPrevious,
               Field::Holder::kElement},
          },
          {"valueType", "defaultValueData"},
          {elementClass},
          {"defaultValueData", elementClass, {"defaultLinkedVariable", "defaultValue"}}};
}

}  // namespace

ControlKind numericEditFieldKind() {
  Field defaultValue;
  defaultValue.type = FieldType::kNumber;
  defaultValue.sample = 2.5;
  defaultValue.exported = "2.5";
  defaultValue.ignoresOtherTypes = true;
  return editField("Double", defaultValue, "DoubleDefaultValueData");
}

ControlKind editFieldKind() {
  Field defaultValue;
  defaultValue.type = FieldType::kText;
  defaultValue.sample = "abc";
  defaultValue.exported = R"("abc")";
  return editField("String", defaultValue, "StringDefaultValueData");
}

namespace {

/// A default-value element as exported.
std::string number(const std::string& properties) {
  return R"({"class":"lumocode::contentmodel::gxzero::DoubleDefaultValueData")" + properties + "}";
}
std::string text(const std::string& properties) {
  return R"({"class":"lumocode::contentmodel::gxzero::StringDefaultValueData")" + properties + "}";
}

std::string recordWith(const std::string& valueType, const std::string& defaultValue = "") {
  return R"(,"valueType":")" + valueType + '"' +
         (defaultValue.empty() ? "" : R"(,"defaultValueData":)" + defaultValue);
}

const Records kWholeRecords = {"Found the valueType property", "Set the valueType property",
                               "Found the defaultValueData property",
                               "Set the defaultValue property"};
const Records kUpToDefaultValue(kWholeRecords.begin(), kWholeRecords.begin() + 3);
const Records kValueTypeRecords(kWholeRecords.begin(), kWholeRecords.begin() + 2);

void expectBuild(const ControlKind& kind, const ControlCase& control) {
  EXPECT_EQ(buildWith(*kind.builder, control.json()), control.expected());
}

TEST(EditFieldBuilder, IsMeantToAskInTheComboBoxsWords) {
  const Value control = json(R"({"className":"LumoControlNode","context":{"type":"editField"}})");
  bool answer = false;
  EXPECT_EQ(recordsOf([&] { answer = EditFieldBuilderImpl().canBuild(control); }),
            Records{"Checking if can build ComboBox"});
  EXPECT_TRUE(answer);
}

TEST(EditFieldBuilder, AttachesANumberForTheValueTypeDouble) {
  expectRows(
      numericEditFieldKind(),
      {
          {"a number",
           R"({"valueType":"Double","defaultValue":2.5,"defaultValueLinkedVariable":"x"})",
           recordWith("Double", number(R"(,"defaultLinkedVariable":"x","defaultValue":2.5)")), "",
           kWholeRecords},
          {"zero is set",
           R"({"valueType":"Double","defaultValue":0,"defaultValueLinkedVariable":""})",
           recordWith("Double", number(R"(,"defaultLinkedVariable":"","defaultValue":0)")), "",
           kWholeRecords},
          {"text that spells a number is meant to leave the value unset without an error",
           R"({"valueType":"Double","defaultValue":"2.5","defaultValueLinkedVariable":"x"})",
           recordWith("Double", number(R"(,"defaultLinkedVariable":"x")")), "", kWholeRecords},
      });
  const ControlKind kind = numericEditFieldKind();
  expectBuild(kind, ControlCase(kind).giveAll());
}

TEST(EditFieldBuilder, TheNumberIsMeantToBeSkippedForEveryOtherType) {
  const ControlKind kind = numericEditFieldKind();
  for (const Alternative& other : alternativesExcept("double")) {
    SCOPED_TRACE(other.name);
    expectBuild(kind, ControlCase(kind).giveAll().giveOther("defaultValue", other));
  }
}

TEST(EditFieldBuilder, TheTextIsMeantToFailForEveryOtherType) {
  const ControlKind kind = editFieldKind();
  for (const Alternative& other : alternativesExcept("string")) {
    SCOPED_TRACE(other.name);
    expectBuild(kind, ControlCase(kind).giveAll().giveOther("defaultValue", other));
  }
}

TEST(EditFieldBuilder, ComparesTheValueTypeWholeAndWithItsCase) {
  for (const char* valueType : {"", "double", "DOUBLE", "Doubl", "Double ", " Double", "Doubles",
                                "DoubleArray", "Number", "String"}) {
    SCOPED_TRACE(valueType);
    const std::string given = R"({"defaultValueLinkedVariable":"v","valueType":")" +
                              std::string(valueType) + R"(","defaultValue":)";
    expectRows(
        editFieldKind(),
        {
            {"text is stored", given + R"("abc"})",
             recordWith(valueType, text(R"(,"defaultLinkedVariable":"v","defaultValue":"abc")")),
             "", kWholeRecords},
            {"a number is an error", given + "2.5}", recordWith(valueType),
             "invalid conversion: double to string", kUpToDefaultValue, text("")},
        });
  }
}

TEST(EditFieldBuilder, AZeroCharacterInTheValueTypeCounts) {
  const ControlKind kind = editFieldKind();
  expectBuild(kind,
              ControlCase(kind).giveAll().give(test_support::commonFields().size(),
                                               std::string("Double\0", 7), R"("Double\u0000")"));
}

TEST(EditFieldBuilder, WithoutAValueTypeTheDefaultValueIsText) {
  expectRows(
      editFieldKind(),
      {
          {"text",
           R"({"defaultValue":"abc","defaultValueLinkedVariable":"v"})",
           R"(,"defaultValueData":)" + text(R"(,"defaultLinkedVariable":"v","defaultValue":"abc")"),
           "",
           {"Found the defaultValueData property", "Set the defaultValue property"}},
          {"a number",
           R"({"defaultValue":2.5,"defaultValueLinkedVariable":"v"})",
           "",
           "invalid conversion: double to string",
           {"Found the defaultValueData property"},
           text("")},
      });
}

TEST(EditFieldBuilder, EmptyTextsAreSet) {
  expectRows(editFieldKind(),
             {{"value and linked variable",
               R"({"valueType":"String","defaultValue":"","defaultValueLinkedVariable":""})",
               recordWith("String", text(R"(,"defaultLinkedVariable":"","defaultValue":"")")), "",
               kWholeRecords}});
}

TEST(EditFieldBuilder, AValueTypeThatIsNoTextEndsItAfterItsFoundRecord) {
  expectRows(editFieldKind(),
             {{"a number",
               R"({"valueType":1,"defaultValue":"a","defaultValueLinkedVariable":"v"})",
               "",
               "invalid conversion: double to string",
               {"Found the valueType property"}}});
}

TEST(EditFieldBuilder, TheLinkedVariableIsMeantToBeLostWithoutADefaultValue) {
  expectRows(editFieldKind(), {
                                  {"a name", R"({"defaultValueLinkedVariable":"v"})", "", "", {}},
                                  {"what is no name is not even read",
                                   R"({"valueType":"Double","defaultValueLinkedVariable":7})",
                                   recordWith("Double"), "", kValueTypeRecords},
                              });
}

TEST(EditFieldBuilder, TheLinkedVariableIsMeantToBeReadWithoutATest) {
  expectRows(editFieldKind(),
             {
                 {"text form: the element holds its text and stays unattached",
                  R"({"valueType":"String","defaultValue":"abc"})", recordWith("String"),
                  "invalid conversion: undefined to string", kUpToDefaultValue,
                  text(R"(,"defaultValue":"abc")")},
                 {"number form: the element holds its number and stays unattached",
                  R"({"valueType":"Double","defaultValue":2.5})", recordWith("Double"),
                  "invalid conversion: undefined to string", kUpToDefaultValue,
                  number(R"(,"defaultValue":2.5)")},
                 {"number form without a number: an empty element stays unattached",
                  R"({"valueType":"Double","defaultValue":null})", recordWith("Double"),
                  "invalid conversion: undefined to string", kUpToDefaultValue, number("")},
             });
}

TEST(EditFieldBuilder, TheLinkedVariableHasToBeTextInBothForms) {
  for (const ControlKind& kind : {editFieldKind(), numericEditFieldKind()}) {
    SCOPED_TRACE(kind.element.className);
    for (const Alternative& other : alternativesExcept("string")) {
      SCOPED_TRACE(other.name);
      expectBuild(kind, ControlCase(kind).giveAll().giveOther("defaultValueLinkedVariable", other));
    }
    expectBuild(kind, ControlCase(kind).giveAll().remove("defaultValueLinkedVariable"));
    expectBuild(kind, ControlCase(kind).giveAll().remove("defaultValue"));
  }
}

TEST(EditFieldBuilder, TheDefaultValueHasTheRecordAsItsOwner) {
  for (const ControlKind& kind : {editFieldKind(), numericEditFieldKind()}) {
    SCOPED_TRACE(kind.element.className);
    const gx::zero::Model model = gx::zero::Model::create();
    kind.builder->build(model, ControlCase(kind).giveAll().json());
    const auto& elements = model.get()->getElements();
    ASSERT_EQ(elements.size(), 4U);
    EXPECT_EQ(elements[3]->getOwner(), gx::zero::ModelElement(elements[2].get()));
  }
}

}  // namespace
}  // namespace tessel::build::json::controls
