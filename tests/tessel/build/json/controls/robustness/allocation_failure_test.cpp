#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "document/gxzero.hpp"
#include "foundation/json.hpp"
#include "gx/zero.hpp"
#include "reference_host/importer/importer.hpp"
#include "reference_host/logging/log_capture.hpp"
#include "sample_builds.hpp"
#include "support/allocation_count.hpp"

namespace tessel::build::json::controls {
namespace {

using contract::buildOf;
using contract::classesIn;
using contract::Outcome;
using contract::Records;
using document::gxzero::Node;
using foundation::json::Value;
using gx::zero::Model;
using reference_host::logging::LogCapture;
using test_support::LimitedMemory;
using test_support::Refusal;
using test_support::sweepAllocations;

class OutOfMemory : public testing::TestWithParam<SampleBuild> {
 protected:
  OutOfMemory() {
    // Makes what the process and this thread make once.
    EXPECT_EQ(fullOutcome(), sample_.expected);
  }

  /// Calls something with diagnostics off, then on.
  template <typename Action>
  void withoutAndWithLog(const Action& action) {
    action();
    SCOPED_TRACE("with the log");
    capture_.emplace();
    action();
    capture_.reset();
  }

  Outcome fullOutcome() const { return buildOf(sample_.builder, sample_.json); }

  /// The records since the last time; there are none with diagnostics off.
  Records takeRecords() { return capture_ ? capture_->takeTexts() : Records(); }
  Records logged(const Records& records) const { return capture_ ? records : Records(); }

  /// Builds with limited memory, and holds the build to what it owes then.
  void buildWithin(LimitedMemory& memory, Refusal refusal) {
    const Model model = Model::create();
    Node node;
    const std::exception_ptr thrown =
        memory.run([&] { node = sample_.builder.build(model, sample_.json); });
    const Records records = takeRecords();

    const bool outOfMemory = test_support::isOutOfMemory(thrown);
    if (!outOfMemory) {
      EXPECT_EQ(thrown ? reference_host::importer::messageOf(thrown) : "", sample_.expected.error);
      EXPECT_TRUE(contract::areSame(contract::rootsOf(model), sample_.expected.roots));
      const std::size_t lost = logged(sample_.expected.records).size() - records.size();
      // Nobody but the log passes over a failure.
      EXPECT_EQ(memory.ranOut(), lost > 0);
      if (refusal == Refusal::kOnce) {
        EXPECT_LE(lost, 1U);
      }
    }
    EXPECT_TRUE(areAmong(records, logged(sample_.expected.records)));
    EXPECT_TRUE(!outOfMemory || memory.ranOut());

    EXPECT_EQ(model.get()->getHeldElementCount(), node ? 1U : 0U);
    EXPECT_EQ(node ? node.get()->getHandleCount() : 1U, 1U);
    node = Node();
    EXPECT_EQ(model.get()->getHeldElementCount(), 0U);
    const std::vector<std::string> classes = classesIn(model);
    const std::vector<std::string>& all = sample_.expected.created;
    ASSERT_LE(classes.size(), all.size());
    EXPECT_TRUE(std::equal(classes.begin(), classes.end(), all.begin()));
    EXPECT_EQ(sample_.json, before_);

    EXPECT_EQ(fullOutcome(), sample_.expected);
    takeRecords();
  }

  /// Asks with limited memory, and holds the recognition to what it owes then.
  void askWithin(LimitedMemory& memory) {
    bool claimed = false;
    const std::exception_ptr thrown =
        memory.run([&] { claimed = sample_.builder.canBuild(sample_.json); });
    const Records records = takeRecords();
    EXPECT_TRUE(areAmong(records, logged(sample_.recognition)));
    if (thrown != nullptr) {
      EXPECT_TRUE(sample_.recognizedByHost && memory.ranOut());
      EXPECT_TRUE(test_support::isOutOfMemory(thrown));
    } else {
      EXPECT_TRUE(claimed);
      // Nobody but the log passes over a failure.
      EXPECT_EQ(memory.ranOut(), records.size() < logged(sample_.recognition).size());
    }
    EXPECT_EQ(sample_.json, before_);
    EXPECT_TRUE(sample_.builder.canBuild(sample_.json));
    EXPECT_EQ(takeRecords(), logged(sample_.recognition));
  }

  const SampleBuild sample_ = GetParam();
  const Value before_ = sample_.json;
  std::optional<LogCapture> capture_;
};

INSTANTIATE_TEST_SUITE_P(EveryKind, OutOfMemory, testing::ValuesIn(allSamples()),
                         [](const auto& sample) { return sample.param.name; });

TEST_P(OutOfMemory, ABuildLeavesWithBadAllocAndNothingHeld) {
  withoutAndWithLog([this] {
    for (const Refusal refusal : {Refusal::kFromThenOn, Refusal::kOnce}) {
      const std::size_t failures = sweepAllocations(refusal, [&](LimitedMemory& memory) {
        SCOPED_TRACE(testing::Message() << memory.successes() << " allocations succeed, then "
                                        << (refusal == Refusal::kOnce ? "one fails" : "none"));
        buildWithin(memory, refusal);
      });
      EXPECT_GT(failures, 3U);
    }
  });
}

TEST_P(OutOfMemory, ARecognitionStillAnswers) {
  withoutAndWithLog([this] {
    for (const Refusal refusal : {Refusal::kFromThenOn, Refusal::kOnce}) {
      const std::size_t failures = sweepAllocations(refusal, [this](LimitedMemory& memory) {
        SCOPED_TRACE(memory.successes());
        askWithin(memory);
      });
      // Nobody but the log and the host asks for memory.
      EXPECT_TRUE(failures > 0 || !capture_);
      EXPECT_TRUE(failures == 0 || capture_ || sample_.recognizedByHost);
    }
  });
}

/// What a process makes once, such as the metaclasses, is made when it is first used: in this test,
/// if it runs alone.
TEST(OutOfMemoryAtFirst, WhatIsMadeOnceIsMadeLater) {
  const LogCapture capture;
  for (const SampleBuild& sample : successfulSamples()) {
    SCOPED_TRACE(sample.name);
    sweepAllocations(Refusal::kFromThenOn, [&sample](LimitedMemory& memory) {
      SCOPED_TRACE(memory.successes());
      const Model model = Model::create();
      const std::exception_ptr thrown = memory.run([&] {
        sample.builder.canBuild(sample.json);
        sample.builder.build(model, sample.json);
      });
      EXPECT_EQ(test_support::isOutOfMemory(thrown), thrown != nullptr);
      EXPECT_EQ(model.get()->getHeldElementCount(), 0U);
    });
    EXPECT_EQ(buildOf(sample.builder, sample.json), sample.expected);
  }
}

}  // namespace
}  // namespace tessel::build::json::controls
