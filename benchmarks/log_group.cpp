/// @file
/// What a diagnostic record costs, beside a bare one of Boost.Log.

#include <atomic>
#include <boost/log/attributes/value_extraction.hpp>
#include <boost/log/core/core.hpp>
#include <boost/log/core/record_view.hpp>
#include <boost/log/sinks/basic_sink_backend.hpp>
#include <boost/log/sinks/unlocked_frontend.hpp>
#include <boost/log/sources/record_ostream.hpp>
#include <boost/log/sources/severity_feature.hpp>
#include <boost/make_shared.hpp>
#include <cstdint>
#include <memory>
#include <string_view>

#include "benchmark/benchmark.h"
#include "framework/diagnostics.hpp"
#include "groups.hpp"
#include "tessel/shared/logging.hpp"

namespace benchmarks {

namespace {

namespace log = boost::log;
using tessel::build::json::controls::framework::kDiagnosticSeverity;
using tessel::build::json::controls::framework::logDiagnostic;

constexpr std::string_view kText = "Found the executionModel property";
constexpr std::size_t kRecords = 1'000;

/// Looks at each record's text and keeps nothing.
class ReadingSink : public log::sinks::basic_sink_backend<log::sinks::concurrent_feeding> {
 public:
  void consume(const log::record_view& record) {
    const auto text = log::extract<std::string>("Message", record);
    benchmark::DoNotOptimize(text ? text->size() : 0);
  }
};

/// The host's logger as Boost.Log's statements take one, with none of what ours does around it.
class BareLogger {
 public:
  using char_type = char;

  log::record open_record() {
    log::sources::aux::get_severity_level() = kDiagnosticSeverity;
    return foundation::log::core(logger_)->open_record(attributes(logger_));
  }
  void push_record(BOOST_RV_REF(log::record) record) {
    foundation::log::core(logger_)->push_record(boost::move(record));
  }

 private:
  foundation::log::basic_diagnostic_logger<char>& logger_ = tessel::shared::logging::getLogger();
};

enum class Levels { kOff, kOn };
enum class Sink { kReads, kRejects };

/// While it lives, the log is set up for one variant.
class LogSetUp {
 public:
  LogSetUp(Levels levels, Sink sink)
      : sink_(boost::make_shared<log::sinks::unlocked_sink<ReadingSink>>(
            boost::make_shared<ReadingSink>())) {
    if (sink == Sink::kRejects) {
      sink_->set_filter([](const log::attribute_value_set&) { return false; });
    }
    log::core::get()->add_sink(sink_);
    word().store(levels == Levels::kOn ? kDiagnosticSeverity : 0);
  }
  ~LogSetUp() {
    word().store(0);
    log::core::get()->remove_sink(sink_);
  }
  LogSetUp(const LogSetUp&) = delete;
  LogSetUp& operator=(const LogSetUp&) = delete;

 private:
  static std::atomic<std::uint32_t>& word() {
    return enabled_levels(tessel::shared::logging::getLogger());
  }

  boost::shared_ptr<log::sinks::unlocked_sink<ReadingSink>> sink_;
};

template <typename Write>
Variant records(const char* name, Levels levels, Sink sink, const Write& write) {
  return {name, kRecords, [levels, sink, write](int) {
            const LogSetUp setUp(levels, sink);
            for (std::size_t record = 0; record < kRecords; ++record) write();
          }};
}

}  // namespace

Group logGroup() {
  const auto ours = [] { logDiagnostic(kText); };
  const auto bare = [] {
    BareLogger logger;
    BOOST_LOG_STREAM(logger) << kText;
  };
  Group group;
  group.name = "log";
  group.unit = "record";
  group.variants = {records("written", Levels::kOn, Sink::kReads, ours),
                    records("bare", Levels::kOn, Sink::kReads, bare),
                    records("rejected", Levels::kOn, Sink::kRejects, ours),
                    records("bare rejected", Levels::kOn, Sink::kRejects, bare),
                    records("off", Levels::kOff, Sink::kReads, ours)};
  group.rows = {{"record that is written", "bare record of Boost.Log", 0, 1, Bound::kAtMost, 1.15},
                {"record that a filter rejects", "bare record of Boost.Log", 2, 3},
                {"record with diagnostics off", "bare record of Boost.Log", 4, 1}};
  return group;
}

}  // namespace benchmarks
