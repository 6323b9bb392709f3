#include <gtest/gtest.h>

#include <cstddef>
#include <exception>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "control_kinds.hpp"
#include "controls/control_builders.hpp"
#include "reference_host/export/export.hpp"
#include "support/allocation_count.hpp"
#include "support/control_fields.hpp"
#include "support/json.hpp"

namespace tessel::build::json::controls {

using test_support::Alternative;
using test_support::alternatives;
using test_support::alternativesExcept;
using test_support::buildWith;
using test_support::ControlCase;
using test_support::ControlKind;
using test_support::Field;
using test_support::fieldsOf;
using test_support::FieldType;
using test_support::json;
using test_support::Recognition;
using test_support::Records;
using test_support::recordsOf;

ControlKind buttonKind() {
  return {"Button",
          std::make_shared<ButtonBuilderImpl>(),
          Recognition::kTypeWordOrClassName,
          "button",
          "Checking if can build Button",
          "Starting to build a Button using the incoming JSON below",
          "ButtonNode",
          "buttonData",
          "ButtonData",
          false,
          {},
          {},
          {}};
}

std::vector<ControlKind> allKinds() {
  return {buttonKind(),     checkBoxKind(),  colorPickerKind(), comboBoxKind(),
          datePickerKind(), editFieldKind(), fileBrowserKind(), rangeSliderKind(),
          sliderKind(),     spinnerKind(),   stateButtonKind()};
}

std::string answerOf(const ControlKind& kind, const Value& json) {
  try {
    return kind.builder->canBuild(json) ? "yes" : "no";
  } catch (const std::exception& error) {
    return error.what();
  }
}

std::vector<std::string> claimantsOf(const Value& json) {
  std::vector<std::string> claimants;
  for (const ControlKind& kind : allKinds()) {
    const std::string answer = answerOf(kind, json);
    if (answer == "no") continue;
    claimants.push_back(answer == "yes" ? kind.name : kind.name + ": " + answer);
  }
  return claimants;
}

namespace {

class EveryControl : public testing::TestWithParam<ControlKind> {
 protected:
  EveryControl() : kind_(GetParam()), fields_(fieldsOf(kind_)) {}

  ControlCase emptyCase() const { return ControlCase(kind_); }
  ControlCase fullCase() const { return ControlCase(kind_).giveAll(); }
  void expectBuild(const ControlCase& control) const {
    EXPECT_EQ(buildWith(*kind_.builder, control.json()), control.expected());
  }
  std::string nameOf(std::size_t field) const {
    return (fields_[field].place == Field::Place::kData ? "data." : "") + fields_[field].key;
  }

  const ControlKind kind_;
  const std::vector<Field> fields_;
};

INSTANTIATE_TEST_SUITE_P(Controls, EveryControl, testing::ValuesIn(allKinds()),
                         [](const auto& kind) { return kind.param.name; });

TEST_P(EveryControl, ClaimsItsOwnObjectsAndNoOtherKinds) {
  for (const ControlKind& other : allKinds()) {
    SCOPED_TRACE(other.name);
    const Value control = ControlCase(other).giveAll().json();
    std::string answer;
    EXPECT_EQ(recordsOf([&] { answer = answerOf(kind_, control); }),
              Records{kind_.recognitionText});
    EXPECT_EQ(answer, kind_.name == other.name ? "yes" : "no");
  }
}

TEST_P(EveryControl, RefusesWhatIsNoObject) {
  Records expected = {kind_.recognitionText};
  if (kind_.recognition != Recognition::kHostClassName) {
    expected.emplace_back("Incoming JSON was not an Object");
  }
  for (const Alternative& other : alternativesExcept("object")) {
    SCOPED_TRACE(other.name);
    std::string answer;
    EXPECT_EQ(recordsOf([&] { answer = answerOf(kind_, other.value); }), expected);
    EXPECT_EQ(answer, "no");
  }
}

TEST_P(EveryControl, RecognisesByItsRule) {
  struct Row {
    std::string description;
    Value value;
    std::vector<std::string> answers;  // by rule, in the enumeration's order
  };
  const std::string& word = kind_.word;
  const auto generic = [](const std::string& type) {
    return json(R"({"className":"LumoControlNode","context":{"type":")" + type + R"("}})");
  };
  const auto ofClass = [](const std::string& name) {
    return json(R"({"className":")" + name + R"("})");
  };
  const std::string undefinedToObject = "invalid conversion: undefined to object";
  const std::string undefinedToString = "invalid conversion: undefined to string";
  const std::string doubleToString = "invalid conversion: double to string";
  const Row rows[] = {
      {"the word as class name", ofClass(word), {"yes", "no", "yes", "yes"}},
      {"the word as type", generic(word), {"no", "yes", "yes", "no"}},
      {"a longer class name", ofClass(word + "x"), {"no", "no", "no", "no"}},
      {"a longer type", generic(word + "x"), {"no", "no", "no", "no"}},
      {"a class name cut short", ofClass(word.substr(1)), {"no", "no", "no", "no"}},
      {"no class name",
       json(R"({"context":{"type":")" + word + R"("}})"),
       {"no", "no", "no", "no"}},
      {"class name that is a number",
       json(R"({"className":7})"),
       {doubleToString, doubleToString, doubleToString, "no"}},
      {"generic control without context",
       json(R"({"className":"LumoControlNode"})"),
       {"no", undefinedToObject, undefinedToObject, "no"}},
      {"generic control without type",
       json(R"({"className":"LumoControlNode","context":{}})"),
       {"no", undefinedToString, undefinedToString, "no"}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.description);
    std::string answer;
    EXPECT_EQ(recordsOf([&] { answer = answerOf(kind_, row.value); }),
              Records{kind_.recognitionText});
    EXPECT_EQ(answer, row.answers[static_cast<std::size_t>(kind_.recognition)]);
  }
}

TEST_P(EveryControl, BuildsWithEveryKey) {
  expectBuild(fullCase());
}

TEST_P(EveryControl, BuildsWithEachKeyAlone) {
  expectBuild(emptyCase());
  for (std::size_t field = 0; field < fields_.size(); ++field) {
    SCOPED_TRACE(nameOf(field));
    expectBuild(emptyCase().give(field));
  }
}

TEST_P(EveryControl, BuildsWithEachKeyLeftOut) {
  for (std::size_t field = 0; field < fields_.size(); ++field) {
    SCOPED_TRACE(nameOf(field));
    expectBuild(fullCase().remove(field));
  }
}

TEST_P(EveryControl, ConvertsNoOtherType) {
  for (std::size_t field = 0; field < fields_.size(); ++field) {
    SCOPED_TRACE(nameOf(field));
    const auto others = alternativesExcept(alternativeNameOf(fields_[field].type));
    ASSERT_EQ(others.size(), alternatives().size() - 1);
    for (const Alternative& other : others) {
      SCOPED_TRACE(other.name);
      expectBuild(fullCase().giveOther(field, other));
    }
  }
}

TEST_P(EveryControl, BuildsWithoutContextOrData) {
  expectBuild(fullCase().removeContext());
  expectBuild(fullCase().removeData());
  expectBuild(emptyCase().removeContext());
  expectBuild(emptyCase().removeData());
}

TEST_P(EveryControl, ContextOrDataThatIsNoObjectHasNoMembers) {
  for (const Alternative& other : alternativesExcept("object")) {
    SCOPED_TRACE(other.name);
    expectBuild(fullCase().replaceContext(other.value));
    expectBuild(fullCase().replaceData(other.value));
  }
}

TEST_P(EveryControl, StoresEveryValueOfAFieldsType) {
  for (std::size_t field = 0; field < fields_.size(); ++field) {
    SCOPED_TRACE(nameOf(field));
    for (const auto& variation : test_support::variationsOf(fields_[field].type)) {
      SCOPED_TRACE(variation.description);
      expectBuild(fullCase().give(field, variation.value, variation.exported));
    }
  }
}

TEST_P(EveryControl, IgnoresUnknownKeys) {
  std::set<std::string> known = {"className", "context", "type", "data"};
  for (const Field& field : fields_) known.insert(field.key);
  ControlCase control = fullCase();
  for (const Alternative& other : alternatives()) {
    const std::string key = "of type " + other.name;
    control.addToControl(key, other.value);
    control.addToContext(key, other.value);
    control.addToData(key, other.value);
  }
  // The model's names for the properties, and the words of the records, are no keys.
  for (const Field& field : fields_) {
    if (known.count(field.property) == 0) control.addToData(field.property, 1.0F);
  }
  for (const char* word : {"label", "code", "min", "max"}) control.addToData(word, 1.0F);
  expectBuild(control);
}

TEST_P(EveryControl, ReadsAKeyAtItsOwnPlaceOnly) {
  ControlCase control = emptyCase();
  for (const Field& field : fields_) {
    if (field.key == "text") continue;  // a key of both places
    if (field.place == Field::Place::kData) {
      control.addToControl(field.key, field.sample);
    } else {
      control.addToData(field.key, field.sample);
    }
    control.addToContext(field.key, field.sample);
  }
  expectBuild(control);
}

TEST_P(EveryControl, CreatesItsElementsInOrder) {
  const gx::zero::Model model = gx::zero::Model::create();
  kind_.builder->build(model, fullCase().json());
  std::vector<std::u16string> expected;
  const auto expect = [&expected](const std::string& name) {
    expected.emplace_back(name.begin(), name.end());
  };
  expect(test_support::nodeClassName(kind_.nodeClass));
  expect("document::gxzero::LumoControlPosition");
  expect(test_support::recordClassName(kind_.recordClass));
  for (const std::string& name : kind_.laterElements) {
    expect(test_support::recordClassName(name));
  }
  std::vector<std::u16string> classes;
  for (const auto& element : model.get()->getElements()) {
    classes.push_back(element->metaClass().get()->getQualifiedName());
  }
  EXPECT_EQ(classes, expected);
}

TEST_P(EveryControl, CreatesItsRecordOnceTheIdIsSet) {
  // Seen only where memory ends between the two.
  const std::string id = "an id that takes memory of its own";
  Value control = fullCase().json();
  control["controlId"] = Value(id);
  kind_.builder->build(gx::zero::Model::create(), control);  // makes what is made once
  std::size_t endedBetween = 0;
  const auto buildWithin = [&](test_support::LimitedMemory& memory) {
    SCOPED_TRACE(memory.successes());
    const gx::zero::Model model = gx::zero::Model::create();
    memory.run([&] { kind_.builder->build(model, control); });
    const std::size_t elements = model.get()->getElements().size();
    const bool hasId = test_support::exportedRoots(model).find(id) != std::string::npos;
    // The third one, after the node and its position.
    EXPECT_TRUE(elements < 3 || hasId);
    if (elements == 2 && hasId) ++endedBetween;
  };
  test_support::sweepAllocations(test_support::Refusal::kFromThenOn, buildWithin);
  EXPECT_GT(endedBetween, 0U);
}

TEST_P(EveryControl, ReturnsTheOnlyHandle) {
  const gx::zero::Model model = gx::zero::Model::create();
  {
    const Node node = kind_.builder->build(model, fullCase().json());
    EXPECT_EQ(node.get()->getHandleCount(), 1U);
    EXPECT_EQ(model.get()->getHeldElementCount(), 1U);
  }
  EXPECT_EQ(model.get()->getHeldElementCount(), 0U);
  EXPECT_EQ(model.get()->getRoots().size(), 1U);
}

TEST_P(EveryControl, BuildsTheSameWithDiagnosticsOff) {
  const gx::zero::Model model = gx::zero::Model::create();
  const ControlCase control = fullCase();
  const Node node = kind_.builder->build(model, control.json());
  EXPECT_EQ(reference_host::exporting::toJson(node), control.expected().node);
}

TEST(AllControls, AreElevenWithTextsOfTheirOwn) {
  std::set<std::string> names;
  std::set<std::string> startTexts;
  std::multiset<std::string> recognitionTexts;
  for (const ControlKind& kind : allKinds()) {
    names.insert(kind.name);
    startTexts.insert(kind.startText);
    recognitionTexts.insert(kind.recognitionText);
  }
  EXPECT_EQ(names.size(), 11U);
  EXPECT_EQ(startTexts.size(), 11U);
  // Meant: the edit field asks in the combo box's words.
  EXPECT_EQ(recognitionTexts.count("Checking if can build ComboBox"), 2U);
}

TEST(AllControls, NobodyClaimsAnotherCaseOfAWord) {
  for (const ControlKind& kind : allKinds()) {
    SCOPED_TRACE(kind.name);
    Value control = ControlCase(kind).json();
    Value& word = kind.recognition == Recognition::kClassName ||
                          kind.recognition == Recognition::kHostClassName
                      ? control["className"]
                      : control["context"]["type"];
    std::string text = kind.word;
    text.front() = static_cast<char>(text.front() ^ 0x20);
    word = Value(text);
    EXPECT_EQ(claimantsOf(control), std::vector<std::string>{});
  }
}

}  // namespace
}  // namespace tessel::build::json::controls
