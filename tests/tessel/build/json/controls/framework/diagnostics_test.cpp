#include "framework/diagnostics.hpp"

#include <gmock/gmock.h>

#include <atomic>
#include <boost/log/core/core.hpp>
#include <boost/log/core/record.hpp>
#include <boost/log/sources/record_ostream.hpp>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <future>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>

#include "support/allocation_count.hpp"
#include "support/records.hpp"
#include "tessel/shared/logging.hpp"

namespace tessel::build::json::controls::framework {
namespace {

using reference_host::logging::LogCapture;
using test_support::Records;
using test_support::recordsOf;

std::atomic<std::uint32_t>& levels() {
  return enabled_levels(shared::logging::getLogger());
}

/// Counts the records that are opened while it lives, and lets none or all of them through.
class FilterInPlace {
 public:
  explicit FilterInPlace(bool accept) {
    boost::log::core::get()->set_filter([this, accept](const boost::log::attribute_value_set&) {
      ++opened_;
      return accept;
    });
  }
  ~FilterInPlace() { boost::log::core::get()->reset_filter(); }
  FilterInPlace(const FilterInPlace&) = delete;
  FilterInPlace& operator=(const FilterInPlace&) = delete;

  int opened() const { return opened_; }

 private:
  std::atomic<int> opened_{0};
};

TEST(Diagnostics, WritesItsTextsAtSeverity8ForWhichBit3IsEnough) {
  LogCapture capture;
  const std::uint32_t before = levels();
  levels() = 8;
  logDiagnostic("given");
  logDiagnostic([] { return std::string("produced"); });
  logDiagnostic("");
  levels() = before;
  ASSERT_EQ(capture.records().size(), 3U);
  EXPECT_EQ(capture.records()[0].text, "given");
  EXPECT_EQ(capture.records()[1].text, "produced");
  EXPECT_EQ(capture.records()[2].text, "");
  for (const auto& record : capture.records()) EXPECT_EQ(record.severity, 8);
}

TEST(Diagnostics, NoTextIsProducedForNobody) {
  struct Row {
    const char* description;
    std::uint32_t levels;
    bool enabled;
    bool accepted;
    int opened;
  };
  const Row rows[] = {
      {"no severity is wanted", 0, true, true, 0},
      {"every other severity is wanted", ~8U, true, true, 0},
      {"the core is disabled", 8, false, true, 0},
      {"a filter rejects the records", 8, true, false, 2},
  };
  const LogCapture capture;
  const std::uint32_t before = levels();
  for (const Row& row : rows) {
    SCOPED_TRACE(row.description);
    const FilterInPlace filter(row.accepted);
    levels() = row.levels;
    boost::log::core::get()->set_logging_enabled(row.enabled);
    logDiagnostic("given");
    logDiagnostic([]() -> std::string {
      ADD_FAILURE() << "a text was produced for nobody";
      return "";
    });
    EXPECT_EQ(filter.opened(), row.opened);
    boost::log::core::get()->set_logging_enabled(true);
  }
  levels() = before;
  EXPECT_TRUE(capture.records().empty());
}

TEST(Diagnostics, WithTheCoreDisabledNobodyWaitsForTheLock) {
  const LogCapture capture;
  boost::log::core::get()->set_logging_enabled(false);
  std::unique_lock<foundation::log::slim_lock> guard(lock(shared::logging::getLogger()));
  const std::future<void> other =
      std::async(std::launch::async, [] { logDiagnostic("not written"); });
  EXPECT_EQ(other.wait_for(std::chrono::seconds(10)), std::future_status::ready);
  guard.unlock();
  other.wait();
  boost::log::core::get()->set_logging_enabled(true);
}

TEST(Diagnostics, ARecordLeavesItsStreamToTheNext) {
  using StreamProvider = boost::log::aux::stream_provider<char>;
  // Boost.Log keeps the streams of a thread: a new thread has none but those of its records.
  std::thread([] {
    const LogCapture capture;
    logDiagnostic("first");
    const auto allocationsForAStream = [] {
      auto& logger = shared::logging::getLogger();
      boost::log::record record = boost::log::core::get()->open_record(attributes(logger));
      EXPECT_TRUE(record);
      return test_support::allocationsOf([&record] {
        StreamProvider::release_compound(StreamProvider::allocate_compound(record));
      });
    };
    const std::size_t afterARecord = allocationsForAStream();
    const std::size_t withAStreamThere = allocationsForAStream();
    EXPECT_EQ(afterARecord, withAStreamThere);
  }).join();
}

TEST(Diagnostics, AnInterruptedTextIsNotPushedAndTheNextRecordIsWhole) {
  struct LogsWhenDestroyed {
    ~LogsWhenDestroyed() { logDiagnostic("next"); }
  };
  EXPECT_EQ(recordsOf([] {
              logDiagnostic([]() -> std::string { throw std::runtime_error("no text"); });
              logDiagnostic([]() -> std::string { throw 7; });
              try {
                const LogsWhenDestroyed logs;
                throw std::runtime_error("in flight");
              } catch (const std::runtime_error&) {
              }
            }),
            Records{"next"});
}

TEST(Diagnostics, TheLockIsNotHeldWhileATextIsProduced) {
  // With the lock held, the inner call would wait for ever.
  EXPECT_EQ(recordsOf([] {
              logDiagnostic([] {
                logDiagnostic("inner");
                return std::string("outer");
              });
            }),
            (Records{"inner", "outer"}));
}

TEST(Diagnostics, OpeningARecordWaitsForTheLock) {
  const LogCapture capture;
  const FilterInPlace filter(true);
  std::unique_lock<foundation::log::slim_lock> guard(lock(shared::logging::getLogger()));
  std::thread other([] { logDiagnostic("waits"); });
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_EQ(filter.opened(), 0);
  guard.unlock();
  other.join();
  EXPECT_EQ(filter.opened(), 1);
}

}  // namespace
}  // namespace tessel::build::json::controls::framework
