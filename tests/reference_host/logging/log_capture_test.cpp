#include "reference_host/logging/log_capture.hpp"

#include <gmock/gmock.h>

#include <atomic>
#include <boost/log/sources/record_ostream.hpp>
#include <boost/log/sources/severity_feature.hpp>
#include <cstdint>
#include <exception>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "support/allocation_count.hpp"
#include "support/opened_records.hpp"
#include "tessel/shared/logging.hpp"

namespace reference_host::logging {
namespace {

using testing::ElementsAre;
using Texts = std::vector<std::string>;

std::atomic<std::uint32_t>& levels() {
  return enabled_levels(tessel::shared::logging::getLogger());
}

/// Writes a record as a component of the host does, if diagnostics are on.
void write(const std::string& text, int severity = kDiagnosticSeverity) {
  auto& logger = tessel::shared::logging::getLogger();
  if ((levels().load() & (1U << kDiagnosticLevelBit)) == 0) return;
  boost::log::record record = [&] {
    const std::lock_guard<foundation::log::slim_lock> guard(lock(logger));
    boost::log::sources::aux::get_severity_level() = static_cast<boost::uintmax_t>(severity);
    return core(logger)->open_record(attributes(logger));
  }();
  if (!record) return;
  boost::log::record_ostream stream(record);
  stream << text;
  stream.flush();
  core(logger)->push_record(boost::move(record));
}

/// Each test starts with diagnostics off, and has to leave the level word as it found it.
class LogCaptureTest : public testing::Test {
 protected:
  void SetUp() override { levels() = 0; }
  void TearDown() override { levels() = 0; }
};

TEST_F(LogCaptureTest, CollectsSeverityAndTextInOrderUntilTheyAreTaken) {
  LogCapture capture;
  write("first");
  write("second", 3);
  ASSERT_EQ(capture.records().size(), 2U);
  EXPECT_EQ(capture.records()[0].severity, 8);
  EXPECT_EQ(capture.records()[1].severity, 3);
  EXPECT_THAT(capture.takeTexts(), ElementsAre("first", "second"));
  write("third");
  EXPECT_THAT(capture.takeTexts(), ElementsAre("third"));
}

TEST_F(LogCaptureTest, SwitchesDiagnosticsOnAndBackAndKeepsOtherBits) {
  for (const std::uint32_t before : {0x1U, 0x9U}) {
    levels() = before;
    {
      const LogCapture capture;
      EXPECT_EQ(levels().load(), before | 0x8U);
      levels().fetch_or(0x20);
      levels().fetch_and(~0x1U);
    }
    EXPECT_EQ(levels().load(), (before & 0x8U) | 0x20U);
  }
}

TEST_F(LogCaptureTest, OverlappingCapturesEndInAnyOrder) {
  auto first = std::make_unique<LogCapture>();
  auto second = std::make_unique<LogCapture>();
  auto third = std::make_unique<LogCapture>();
  write("one");
  second.reset();
  write("two");
  EXPECT_THAT(first->takeTexts(), ElementsAre("one", "two"));
  first.reset();
  write("three");
  EXPECT_THAT(third->takeTexts(), ElementsAre("one", "two", "three"));
  EXPECT_EQ(levels().load(), 0x8U);
  third.reset();
  EXPECT_EQ(levels().load(), 0U);
}

TEST_F(LogCaptureTest, EachThreadCapturesItsOwnRecordsOnly) {
  LogCapture capture;
  const auto captureAndWrite = [](const std::string& name) {
    for (int round = 0; round < 50; ++round) {
      LogCapture own;
      Texts expected;
      for (int number = 0; number < 5; ++number) {
        expected.push_back(name + std::to_string(number));
        write(expected.back());
      }
      EXPECT_EQ(own.takeTexts(), expected);
    }
  };
  std::vector<std::thread> threads;
  for (const char* const name : {"a", "b", "c", "d"}) threads.emplace_back(captureAndWrite, name);
  for (std::thread& thread : threads) thread.join();
  write("from here");
  EXPECT_THAT(capture.takeTexts(), ElementsAre("from here"));
}

TEST_F(LogCaptureTest, DisabledLoggingCollectsNothing) {
  LogCapture capture;
  boost::log::core::get()->set_logging_enabled(false);
  write("lost");
  boost::log::core::get()->set_logging_enabled(true);
  write("kept");
  EXPECT_THAT(capture.takeTexts(), ElementsAre("kept"));
}

TEST_F(LogCaptureTest, ARecordThatIsOpenedAfterTheLastOneEndedIsDropped) {
  { const LogCapture capture; }
  // As in a thread that looked at the level word before the capture ended.
  levels() = 0x8;
  testing::internal::CaptureStdout();
  write("late");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(LogCaptureTest, OneThatFindsNoMemoryLeavesEverythingAsItWas) {
  test_support::sweepAllocations(
      test_support::Refusal::kFromThenOn, [](test_support::LimitedMemory& memory) {
        SCOPED_TRACE(memory.successes());
        std::optional<LogCapture> capture;
        const std::exception_ptr thrown = memory.run([&capture] { capture.emplace(); });
        EXPECT_EQ(test_support::isOutOfMemory(thrown), memory.ranOut());
        EXPECT_EQ(levels().load(), capture ? 0x8U : 0U);
        capture.reset();
        EXPECT_EQ(levels().load(), 0U);
      });
  LogCapture capture;
  write("kept");
  EXPECT_THAT(capture.takeTexts(), ElementsAre("kept"));
}

TEST_F(LogCaptureTest, KnowsThatThereWasNoMemoryForARecord) {
  const std::string text = "a text that is too long for any short string buffer";
  std::size_t incomplete = 0;
  test_support::sweepAllocations(
      test_support::Refusal::kOnce, [&](test_support::LimitedMemory& memory) {
        SCOPED_TRACE(memory.successes());
        LogCapture capture;
        const std::exception_ptr thrown = memory.run([&text] { write(text); });
        write("later");
        if (!capture.isComplete()) ++incomplete;
        EXPECT_TRUE(capture.isComplete() || thrown);
        EXPECT_EQ(capture.takeTexts().size(), thrown ? 1U : 2U);
      });
  EXPECT_EQ(incomplete, 2U) << "one for the text, one for its place";
}

using test_support::OpenedRecordCounter;

TEST_F(LogCaptureTest, OpenedRecordsAreCountedBesideCaptures) {
  std::optional<OpenedRecordCounter> counter(std::in_place);
  write("never opened");
  EXPECT_EQ(counter->count(), 0U);
  levels() = 0x8;
  testing::internal::CaptureStdout();
  write("accepted by nobody");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  LogCapture capture;
  write("captured");
  std::thread([] { write("elsewhere"); }).join();
  EXPECT_EQ(counter->count(), 3U);
  counter.reset();
  write("counted no longer");
  EXPECT_THAT(capture.takeTexts(), ElementsAre("captured", "counted no longer"));
}

}  // namespace
}  // namespace reference_host::logging
