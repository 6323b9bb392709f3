#include <gmock/gmock.h>

#include <array>
#include <cstddef>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "reference_host/logging/log_capture.hpp"
#include "sample_builds.hpp"
#include "support/opened_records.hpp"
#include "support/records.hpp"
#include "tessel/shared/logging.hpp"

namespace tessel::build::json::controls {
namespace {

using contract::Outcome;
using test_support::recordsOf;

constexpr std::size_t kThreads = 8;
constexpr std::size_t kRounds = 10;

/// Runs an action in every thread, with the thread's number, some rounds over.
/// @return how often it answered yes, for each thread.
std::array<std::size_t, kThreads> countInThreads(
    const std::function<bool(std::size_t thread)>& action) {
  // Made here: ThreadSanitizer cannot see how the logging library makes its core only once.
  tessel::shared::logging::getLogger();
  std::array<std::size_t, kThreads> good{};
  std::vector<std::thread> threads;
  for (std::size_t number = 0; number < kThreads; ++number) {
    threads.emplace_back([&action, &good, number] {
      for (std::size_t round = 0; round < kRounds; ++round) {
        if (action(number)) ++good[number];
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  return good;
}

/// Builds with diagnostics as they are, into a model of its own.
bool comesOutAsExpected(const SampleBuild& sample) {
  Outcome expected = sample.expected;
  expected.records.clear();
  return sample.builder.canBuild(sample.json) &&
         contract::silentBuildOf(sample.builder, sample.json) == expected;
}

/// The same with diagnostics on and the records of this thread.
bool comesOutAsExpectedLogged(const SampleBuild& sample) {
  bool claimed = false;
  const bool asked =
      recordsOf([&] { claimed = sample.builder.canBuild(sample.json); }) == sample.recognition;
  return asked && claimed && contract::buildOf(sample.builder, sample.json) == sample.expected;
}

TEST(ConcurrentBuilds, OneBuilderServesEightThreads) {
  const test_support::OpenedRecordCounter opened;
  for (const SampleBuild& sample : allSamples()) {
    SCOPED_TRACE(sample.name);
    EXPECT_THAT(countInThreads([&sample](std::size_t) { return comesOutAsExpected(sample); }),
                testing::Each(kRounds));
  }
  EXPECT_EQ(opened.count(), 0U);
}

TEST(ConcurrentBuilds, OneBuilderServesEightThreadsOfWhichSomeLog) {
  for (const SampleBuild& sample : allSamples()) {
    SCOPED_TRACE(sample.name);
    EXPECT_THAT(countInThreads([&sample](std::size_t thread) {
                  return thread % 2 == 0 ? comesOutAsExpected(sample)
                                         : comesOutAsExpectedLogged(sample);
                }),
                testing::Each(kRounds));
  }
}

TEST(ConcurrentBuilds, AllBuildersServeEightThreadsInDifferentOrders) {
  const std::vector<SampleBuild> samples = allSamples();
  EXPECT_THAT(countInThreads([&samples](std::size_t thread) {
                bool good = true;
                for (std::size_t step = 0; step < samples.size(); ++step) {
                  const SampleBuild& sample = samples[(step + thread * 5) % samples.size()];
                  good = (thread % 4 == 0 ? comesOutAsExpectedLogged(sample)
                                          : comesOutAsExpected(sample)) &&
                         good;
                }
                return good;
              }),
              testing::Each(kRounds));
}

}  // namespace
}  // namespace tessel::build::json::controls
