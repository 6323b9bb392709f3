#include <gmock/gmock.h>

#include <array>
#include <cstddef>
#include <functional>
#include <thread>
#include <vector>

#include "sample_builds.hpp"
#include "tessel/shared/logging.hpp"

namespace tessel::build::json::controls {
namespace {

using contract::Outcome;

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
  Outcome expected = sample.built;
  expected.records.clear();
  return sample.builder.canBuild(sample.json) &&
         contract::silentBuildOf(sample.builder, sample.json) == expected;
}

/// The same with diagnostics on and the records of this thread.
bool comesOutAsExpectedLogged(const SampleBuild& sample) {
  return contract::answerOf(sample.builder, sample.json) == sample.answer &&
         contract::buildOf(sample.builder, sample.json) == sample.built;
}

TEST(ConcurrentBuilds, AllBuildersServeEightThreadsOfWhichSomeLog) {
  const std::vector<SampleBuild> samples = allSamples();
  EXPECT_THAT(countInThreads([&samples](std::size_t thread) {
                bool good = true;
                for (std::size_t step = 0; step < samples.size(); ++step) {
                  // Two threads share an order, and one of them logs.
                  const SampleBuild& sample = samples[(step + thread / 2 * 5) % samples.size()];
                  good = (thread % 2 == 0 ? comesOutAsExpectedLogged(sample)
                                          : comesOutAsExpected(sample)) &&
                         good;
                }
                return good;
              }),
              testing::Each(kRounds));
}

}  // namespace
}  // namespace tessel::build::json::controls
