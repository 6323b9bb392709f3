// Every builder against the contract, with all that is made from its kind's fields.

#include <gmock/gmock.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "contract/outcome.hpp"
#include "contract/samples.hpp"
#include "support/all_builders.hpp"
#include "support/opened_records.hpp"
#include "support/rows.hpp"

namespace tessel::build::json::controls {
namespace {

using contract::Kind;
using contract::Sample;
using reference_host::importer::NamedBuilder;

TEST(Contract, HasTheManifestsComponentsInItsOrder) {
  std::vector<std::string> described;
  for (const Kind& kind : contract::kinds()) described.push_back(kind.builder);
  std::vector<std::string> components;
  for (const NamedBuilder& builder : test_support::allBuilders()) {
    components.push_back(builder.name());
  }
  EXPECT_EQ(described, components);
}

// Written by hand: a second reading of the rules.
TEST(Recognition, GoesByEachWordInItsPlaceOnly) {
  test_support::expectClaims("ButtonBuilderImpl",
                             {R"({"className":"button","context":{"type":"slider"}})",
                              R"({"className":"LumoControlNode","context":{"type":"button"}})"},
                             {R"({"className":"Button"})",
                              R"({"className":"ParagraphNode","context":{"type":"button"}})"});
  // The words of types are no class names; nor are those of class names, but for their ends, types.
  for (const char* type : {"checkBox", "comboBox", "editField", "slider"}) {
    test_support::expectClaims("", {}, {R"({"className":")" + std::string(type) + R"("})"});
  }
  for (const char* type : {"rangeSlider", "spinner", "stateButton", "colorPicker", "datePicker",
                           "fileBrowser", "SpinnerControlNode", "DatePickerControlNode"}) {
    test_support::expectClaims(
        "", {},
        {R"({"className":"LumoControlNode","context":{"type":")" + std::string(type) + R"("}})"});
  }
  // What goes by its class name looks at nothing else.
  test_support::expectClaims("StateButtonBuilderImpl",
                             {R"({"className":"StateButtonControlNode","context":7})"}, {});
  test_support::expectClaims("LumoTaskHeaderBuilderImpl",
                             {R"({"className":"LumoAppLineNode","children":7})"},
                             {R"({"className":"LumoAppLineNodes"})", R"({"children":[]})"});
}

class EveryKind : public testing::TestWithParam<Kind> {
 protected:
  const Kind kind_ = GetParam();
  const NamedBuilder& builder_ = test_support::builderOf(kind_.builder);
};

std::string nameOf(const testing::TestParamInfo<Kind>& kind) {
  std::string name = kind.param.name;
  name.erase(std::remove(name.begin(), name.end(), ' '), name.end());
  return name;
}

INSTANTIATE_TEST_SUITE_P(Contract, EveryKind, testing::ValuesIn(contract::kinds()), nameOf);

TEST_P(EveryKind, AnswersAsTheContractSays) {
  std::vector<Sample> samples = contract::strangers();
  for (const Kind& kind : contract::kinds()) {
    for (Sample& sample : contract::samplesOf(kind)) samples.push_back(std::move(sample));
  }
  for (const Sample& sample : samples) {
    SCOPED_TRACE(sample.description);
    contract::Outcome expected = contract::expectedAnswer(kind_, sample.json);
    ASSERT_EQ(contract::answerOf(builder_, sample.json), expected);
    expected.records.clear();
    ASSERT_EQ(contract::silentAnswerOf(builder_, sample.json), expected);
  }
}

TEST_P(EveryKind, ClaimsItsOwnObjectsAlone) {
  for (const Sample& sample : contract::wholeObjects(kind_)) {
    for (const NamedBuilder& builder : test_support::allBuilders()) {
      EXPECT_EQ(builder.canBuild(sample.json), builder.name() == kind_.builder) << builder.name();
    }
  }
}

TEST_P(EveryKind, BuildsAsTheContractSays) {
  std::vector<Sample> samples = contract::samplesOf(kind_);
  // A build looks at nothing that recognition has looked at.
  for (Sample& sample : contract::strangers()) samples.push_back(std::move(sample));
  std::size_t failed = 0;
  const test_support::OpenedRecordCounter opened;
  for (const Sample& sample : samples) {
    SCOPED_TRACE(sample.description);
    contract::Outcome expected = contract::expectedBuild(kind_, sample.json);
    ASSERT_EQ(contract::buildOf(builder_, sample.json), expected);
    failed += expected.error.empty() ? 0U : 1U;
    expected.records.clear();
    const std::size_t before = opened.count();
    ASSERT_EQ(contract::silentBuildOf(builder_, sample.json), expected);
    ASSERT_EQ(opened.count(), before) << "a record is opened with diagnostics off";
  }
  EXPECT_GT(failed, 0U);
  EXPECT_LT(failed, samples.size());
}

TEST_P(EveryKind, WritesEachRecordWhereTheContractHasIt) {
  std::vector<Sample> samples = contract::wholeObjects(kind_);
  for (Sample& sample : contract::failingObjects(kind_)) {
    EXPECT_NE(contract::expectedBuild(kind_, sample.json).error, "");
    samples.push_back(std::move(sample));
  }
  for (const Sample& sample : samples) {
    SCOPED_TRACE(sample.description);
    EXPECT_EQ(contract::stepsOf(builder_, sample.json),
              contract::expectedSteps(kind_, sample.json));
  }
}

}  // namespace
}  // namespace tessel::build::json::controls
