// Every builder against the contract, with all that is made from its kind's fields.

#include <gmock/gmock.h>

#include <algorithm>
#include <cstddef>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "contract/outcome.hpp"
#include "contract/samples.hpp"
#include "gx/zero.hpp"
#include "support/all_builders.hpp"
#include "support/allocation_count.hpp"

namespace tessel::build::json::controls {
namespace {

using contract::Kind;
using contract::Sample;
using foundation::json::Value;
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

TEST(Contract, TellsTheKindsApart) {
  std::set<std::string> words;
  std::set<std::string> starts;
  std::set<std::string> nodes;
  for (const Kind& kind : contract::kinds()) {
    EXPECT_TRUE(words.insert(kind.word).second) << kind.word;
    EXPECT_TRUE(starts.insert(kind.start).second) << kind.start;
    EXPECT_TRUE(nodes.insert(kind.node).second) << kind.node;
  }
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

std::vector<Kind> controls() {
  std::vector<Kind> found;
  for (const Kind& kind : contract::kinds()) {
    if (contract::isControl(kind)) found.push_back(kind);
  }
  return found;
}

class EveryControl : public EveryKind {};
INSTANTIATE_TEST_SUITE_P(Contract, EveryControl, testing::ValuesIn(controls()), nameOf);

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
  for (const Sample& sample : samples) {
    SCOPED_TRACE(sample.description);
    contract::Outcome expected = contract::expectedBuild(kind_, sample.json);
    ASSERT_EQ(contract::buildOf(builder_, sample.json), expected);
    failed += expected.error.empty() ? 0U : 1U;
    expected.records.clear();
    ASSERT_EQ(contract::silentBuildOf(builder_, sample.json), expected);
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

TEST_P(EveryControl, CreatesItsRecordOnceTheIdIsSet) {
  // Seen only where memory ends between the two.
  const Value control = contract::wholeObjects(kind_).front().json;
  builder_.build(gx::zero::Model::create(), control);  // makes what is made once
  std::size_t endedBetween = 0;
  const auto buildWithin = [&](test_support::LimitedMemory& memory) {
    SCOPED_TRACE(memory.successes());
    const gx::zero::Model model = gx::zero::Model::create();
    memory.run([&] { builder_.build(model, control); });
    const std::size_t elements = model.get()->getElements().size();
    const Value::Array roots = contract::rootsOf(model);
    const bool hasId = !roots.empty() && roots.front()["id"] == control["controlId"];
    // The third one, after the node and its position.
    EXPECT_TRUE(elements < 3 || hasId);
    if (elements == 2 && hasId) ++endedBetween;
  };
  test_support::sweepAllocations(test_support::Refusal::kFromThenOn, buildWithin);
  EXPECT_GT(endedBetween, 0U);
}

TEST_P(EveryKind, LeavesTheNodeToTheModel) {
  const gx::zero::Model model = gx::zero::Model::create();
  const Value object = contract::wholeObjects(kind_).front().json;
  builder_.build(model, object);
  builder_.build(model, object);
  EXPECT_EQ(model.get()->getRoots().size(), 2U);
  EXPECT_EQ(model.get()->getHeldElementCount(), 0U);
}

}  // namespace
}  // namespace tessel::build::json::controls
