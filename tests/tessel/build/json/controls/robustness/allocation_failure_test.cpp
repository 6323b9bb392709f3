#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <exception>
#include <new>
#include <string>
#include <tuple>

#include "document/gxzero.hpp"
#include "foundation/json.hpp"
#include "gx/zero.hpp"
#include "reference_host/logging/log_capture.hpp"
#include "sample_builds.hpp"
#include "support/allocation_count.hpp"

namespace tessel::build::json::controls {
namespace {

using contract::Outcome;
using contract::Records;
using document::gxzero::Node;
using foundation::json::Value;
using test_support::LimitedMemory;
using test_support::Refusal;
using test_support::sweepAllocations;

/// A builder with limited memory.
class LimitedBuilder {
 public:
  LimitedBuilder(const SampleBuild& sample, LimitedMemory& memory)
      : builder_(sample.builder), memory_(memory) {}

  bool canBuild(const Value& json) const {
    bool claims = false;
    run([&] { claims = builder_.canBuild(json); });
    return claims;
  }
  Node build(const gx::zero::Model& model, const Value& json) const {
    Node node;
    run([&] { node = builder_.build(model, json); });
    return node;
  }

 private:
  template <typename Action>
  void run(const Action& action) const {
    if (const std::exception_ptr thrown = memory_.run(action)) std::rethrow_exception(thrown);
  }

  const reference_host::importer::NamedBuilder& builder_;
  LimitedMemory& memory_;
};

/// Whether a call ended for want of memory, which there has to be a reason for. Nothing is left
/// held then either.
bool endedWithoutMemory(const Outcome& outcome, const LimitedMemory& memory) {
  if (outcome.error != std::bad_alloc().what()) return false;
  EXPECT_TRUE(memory.ranOut());
  EXPECT_EQ(outcome.offences, Records());
  return true;
}

/// Holds what came of a call to the contract. Only the log passes over a failure: then there are
/// records that are missing.
/// @return how many of them.
std::size_t expectButForRecords(Outcome outcome, Outcome expected, bool logged,
                                const LimitedMemory& memory) {
  if (!logged) expected.records.clear();
  EXPECT_TRUE(areAmong(outcome.records, expected.records));
  const std::size_t lost = expected.records.size() - outcome.records.size();
  if (endedWithoutMemory(outcome, memory)) {
    expected.created.resize(std::min(expected.created.size(), outcome.created.size()));
    EXPECT_EQ(outcome.created, expected.created);
    return 0;
  }
  outcome.records = expected.records;
  EXPECT_EQ(outcome, expected);
  EXPECT_EQ(memory.ranOut(), lost > 0);
  return lost;
}

/// A sample, with diagnostics off or on.
class OutOfMemory : public testing::TestWithParam<std::tuple<SampleBuild, bool>> {
 protected:
  OutOfMemory() {
    // Makes what the process and this thread make once.
    EXPECT_EQ(contract::buildOf(sample_.builder, sample_.json), sample_.built);
  }

  const SampleBuild sample_ = std::get<0>(GetParam());
  const bool logged_ = std::get<1>(GetParam());
};

INSTANTIATE_TEST_SUITE_P(EveryKind, OutOfMemory,
                         testing::Combine(testing::ValuesIn(allSamples()), testing::Bool()),
                         [](const auto& row) {
                           return std::get<0>(row.param).name +
                                  (std::get<1>(row.param) ? "Logged" : "");
                         });

TEST_P(OutOfMemory, ABuildLeavesWithBadAllocAndNothingHeld) {
  const auto build = logged_ ? &contract::buildOf : &contract::silentBuildOf;
  for (const Refusal refusal : {Refusal::kFromThenOn, Refusal::kOnce}) {
    const std::size_t failures = sweepAllocations(refusal, [&](LimitedMemory& memory) {
      SCOPED_TRACE(testing::Message() << memory.successes() << " allocations succeed, then "
                                      << (refusal == Refusal::kOnce ? "one fails" : "none"));
      const Outcome outcome = build(LimitedBuilder(sample_, memory), sample_.json);
      const std::size_t lost = expectButForRecords(outcome, sample_.built, logged_, memory);
      EXPECT_TRUE(lost <= 1 || refusal != Refusal::kOnce);
      // A control's record, its third element, is made once the id is set.
      EXPECT_TRUE(outcome.created.size() < 3 ||
                  outcome.roots[0]["id"] == sample_.json["controlId"]);
      EXPECT_EQ(contract::buildOf(sample_.builder, sample_.json), sample_.built);
    });
    EXPECT_GT(failures, 3U);
  }
}

TEST_P(OutOfMemory, ARecognitionStillAnswers) {
  const auto answer = logged_ ? &contract::answerOf : &contract::silentAnswerOf;
  for (const Refusal refusal : {Refusal::kFromThenOn, Refusal::kOnce}) {
    const std::size_t failures = sweepAllocations(refusal, [&](LimitedMemory& memory) {
      SCOPED_TRACE(memory.successes());
      const Outcome outcome = answer(LimitedBuilder(sample_, memory), sample_.json);
      expectButForRecords(outcome, sample_.answer, logged_, memory);
      EXPECT_TRUE(outcome.claims || sample_.recognizedByHost);
      EXPECT_EQ(contract::answerOf(sample_.builder, sample_.json), sample_.answer);
    });
    // Nobody but the log and the host asks for memory.
    EXPECT_TRUE(failures > 0 || !logged_);
    EXPECT_TRUE(failures == 0 || logged_ || sample_.recognizedByHost);
  }
}

/// What a process makes once, such as the metaclasses, is made when it is first used: in this test,
/// if it runs alone.
TEST(OutOfMemoryAtFirst, WhatIsMadeOnceIsMadeLater) {
  const reference_host::logging::LogCapture capture;
  for (const SampleBuild& sample : successfulSamples()) {
    SCOPED_TRACE(sample.name);
    sweepAllocations(Refusal::kFromThenOn, [&sample](LimitedMemory& memory) {
      SCOPED_TRACE(memory.successes());
      const LimitedBuilder builder(sample, memory);
      for (const Outcome& outcome : {contract::silentAnswerOf(builder, sample.json),
                                     contract::silentBuildOf(builder, sample.json)}) {
        EXPECT_TRUE(outcome.error.empty() || endedWithoutMemory(outcome, memory));
      }
    });
    EXPECT_EQ(contract::buildOf(sample.builder, sample.json), sample.built);
  }
}

}  // namespace
}  // namespace tessel::build::json::controls
