#include <gtest/gtest.h>

#include <atomic>
#include <boost/log/attributes/function.hpp>
#include <boost/log/core/core.hpp>
#include <boost/log/core/record_view.hpp>
#include <boost/log/sinks/basic_sink_backend.hpp>
#include <boost/log/sinks/frontend_requirements.hpp>
#include <boost/log/sinks/sync_frontend.hpp>
#include <boost/log/sinks/text_ostream_backend.hpp>
#include <boost/log/sinks/unlocked_frontend.hpp>
#include <boost/log/utility/formatting_ostream.hpp>
#include <boost/make_shared.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <thread>
#include <utility>

#include "reference_host/logging/log_capture.hpp"
#include "sample_builds.hpp"
#include "support/records.hpp"
#include "tessel/shared/logging.hpp"

namespace tessel::build::json::controls {
namespace {

using contract::buildOf;
using contract::Outcome;
using contract::Records;
using reference_host::logging::LogCapture;
using test_support::recordsOf;

/// How often a log misbehaved.
std::atomic<std::size_t> misbehaved{0};

struct NotAnException {};

/// Undone when it goes.
using Installed = std::shared_ptr<void>;

Installed undoneBy(std::function<void()> undo) {
  return Installed(nullptr, [undo = std::move(undo)](void*) { undo(); });
}

/// A sink that does something with every record.
class ActingBackend
    : public boost::log::sinks::basic_sink_backend<boost::log::sinks::concurrent_feeding> {
 public:
  explicit ActingBackend(std::function<void()> act) : act_(std::move(act)) {}
  void consume(const boost::log::record_view&) { act_(); }

 private:
  std::function<void()> act_;
};

Installed actingSink(std::function<void()> act) {
  using Sink = boost::log::sinks::unlocked_sink<ActingBackend>;
  const auto sink = boost::make_shared<Sink>(boost::make_shared<ActingBackend>(std::move(act)));
  boost::log::core::get()->add_sink(sink);
  return undoneBy([sink] { boost::log::core::get()->remove_sink(sink); });
}

/// A sink that formats every record and writes it to a stream.
template <typename Formatter>
Installed formattingSink(boost::shared_ptr<std::ostream> stream, const Formatter& formatter) {
  using Backend = boost::log::sinks::text_ostream_backend;
  const auto backend = boost::make_shared<Backend>();
  backend->add_stream(stream);
  const auto sink = boost::make_shared<boost::log::sinks::synchronous_sink<Backend>>(backend);
  sink->set_formatter(formatter);
  boost::log::core::get()->add_sink(sink);
  return undoneBy([sink] { boost::log::core::get()->remove_sink(sink); });
}

template <typename Filter>
Installed filter(Filter accepts) {
  boost::log::core::get()->set_filter(
      [accepts](const boost::log::attribute_value_set&) { return accepts(); });
  return undoneBy([] { boost::log::core::get()->reset_filter(); });
}

template <typename Read>
Installed attribute(Read read) {
  const auto added = boost::log::core::get()->add_global_attribute(
      "Troublesome", boost::log::attributes::make_function(std::move(read)));
  EXPECT_TRUE(added.second);
  return undoneBy(
      [place = added.first] { boost::log::core::get()->remove_global_attribute(place); });
}

[[noreturn]] void throwAnException() {
  ++misbehaved;
  throw std::runtime_error("the log is broken");
}

[[noreturn]] void throwSomethingElse() {
  ++misbehaved;
  throw NotAnException();
}

void throwAtTimes() {
  if (++misbehaved % 3 == 0) throw NotAnException();
}

/// Where nothing can be written.
class BrokenBuffer : public std::streambuf {
 protected:
  std::streamsize xsputn(const char*, std::streamsize) override { throwAnException(); }
  int_type overflow(int_type) override { throwAnException(); }
};

/// A stream that throws when it is written to.
class BrokenStream : private BrokenBuffer, public std::ostream {
 public:
  BrokenStream() : std::ostream(static_cast<BrokenBuffer*>(this)) {
    exceptions(std::ios_base::badbit);
  }
};

struct HostileLog {
  const char* name;
  Installed (*install)();
  /// What comes of the records, as far as it is told by the log.
  enum class Records { kAll, kSome, kNone } records;

  friend std::ostream& operator<<(std::ostream& stream, const HostileLog& log) {
    return stream << log.name;
  }
};

using Left = HostileLog::Records;

const HostileLog kHostileLogs[] = {
    // Whether another sink comes before or after the broken one is the core's business.
    {"SinkThrows", [] { return actingSink(&throwAnException); }, Left::kSome},
    {"SinkThrowsNoException", [] { return actingSink(&throwSomethingElse); }, Left::kSome},
    {"SinkThrowsAtTimes", [] { return actingSink(&throwAtTimes); }, Left::kSome},
    {"SinkThrowsAndTheCoresHandlerToo",
     [] {
       const Installed sink = actingSink(&throwAnException);
       boost::log::core::get()->set_exception_handler([] { throwSomethingElse(); });
       return undoneBy([sink] { boost::log::core::get()->set_exception_handler({}); });
     },
     Left::kSome},
    {"FormatterThrows",
     [] {
       return formattingSink(
           boost::make_shared<std::ostringstream>(),
           [](const boost::log::record_view&, boost::log::formatting_ostream& out) {
             out << "the first half";
             throwAnException();
           });
     },
     Left::kSome},
    {"StreamThrows",
     [] {
       return formattingSink(boost::make_shared<BrokenStream>(),
                             [](const boost::log::record_view&,
                                boost::log::formatting_ostream& out) { out << "a whole text"; });
     },
     Left::kSome},
    {"FilterRejects", [] { return filter([] { return ++misbehaved == 0; }); }, Left::kNone},
    {"FilterRejectsEverySecond", [] { return filter([] { return ++misbehaved % 2 == 0; }); },
     Left::kSome},
    {"FilterThrows", [] { return filter([]() -> bool { throwAnException(); }); }, Left::kNone},
    {"FilterThrowsNoException", [] { return filter([]() -> bool { throwSomethingElse(); }); },
     Left::kNone},
    {"CoreDisabled",
     [] {
       ++misbehaved;
       boost::log::core::get()->set_logging_enabled(false);
       return undoneBy([] { boost::log::core::get()->set_logging_enabled(true); });
     },
     Left::kNone},
    {"AttributeThrows", [] { return attribute([]() -> int { throwAnException(); }); }, Left::kNone},
    {"AttributeThrowsNoException", [] { return attribute([]() -> int { throwSomethingElse(); }); },
     Left::kNone},
    {"AttributeThrowsAtTimes", [] { return attribute([] { return throwAtTimes(), 0; }); },
     Left::kSome},
    {"NothingWrong", [] { return attribute([] { return ++misbehaved; }); }, Left::kAll},
};

TEST(Among, SomeOfTheRecordsAreToldFromOthers) {
  const Records all = {"a", "b", "a", "c"};
  EXPECT_TRUE(areAmong({}, all));
  EXPECT_TRUE(areAmong(all, all));
  EXPECT_TRUE(areAmong({"a", "a"}, all));
  EXPECT_FALSE(areAmong({"c", "a"}, all));
  EXPECT_FALSE(areAmong({"a", "a", "a"}, all));
}

class EveryBuildTest : public testing::TestWithParam<HostileLog> {};

INSTANTIATE_TEST_SUITE_P(HostileLogs, EveryBuildTest, testing::ValuesIn(kHostileLogs),
                         [](const auto& log) { return log.param.name; });

/// What came of the records, of all those that there are.
void expectRecords(const Records& records, const Records& all, Left left) {
  EXPECT_TRUE(areAmong(records, all));
  if (left == Left::kAll) {
    EXPECT_EQ(records, all);
  } else if (left == Left::kNone) {
    EXPECT_EQ(records, Records());
  }
}

/// Asks and builds under a hostile log.
void expectSameUnder(const HostileLog& log, const SampleBuild& sample) {
  misbehaved = 0;
  bool claimed = false;
  Outcome outcome;
  Records recognition;
  {
    // The sink of captures is there before, and so would see a record that goes on to a broken one.
    const LogCapture before;
    const Installed installed = log.install();
    recognition = recordsOf([&] { claimed = sample.builder.canBuild(sample.json); });
    outcome = buildOf(sample.builder, sample.json);
  }
  EXPECT_GT(misbehaved, 0U);
  EXPECT_TRUE(claimed);
  expectRecords(recognition, sample.recognition, log.records);
  expectRecords(outcome.records, sample.expected.records, log.records);
  outcome.records = sample.expected.records;
  EXPECT_EQ(outcome, sample.expected);
}

TEST_P(EveryBuildTest, ComesOutAsWithoutTheLog) {
  for (const SampleBuild& sample : allSamples()) {
    SCOPED_TRACE(sample.name);
    expectSameUnder(GetParam(), sample);
    // Of what went wrong nothing stays.
    EXPECT_EQ(buildOf(sample.builder, sample.json), sample.expected);
  }
}

std::atomic<std::uint32_t>& levels() {
  return enabled_levels(shared::logging::getLogger());
}

constexpr std::uint32_t kDiagnosticLevel = 8;

TEST(FlippedLevel, EndsTheRecordsOfABuildWhereItIsCleared) {
  for (const SampleBuild& sample : allSamples()) {
    SCOPED_TRACE(sample.name);
    for (std::size_t last = 1; last <= sample.expected.records.size(); ++last) {
      SCOPED_TRACE("cleared while record " + std::to_string(last) + " is opened");
      std::size_t opened = 0;
      Outcome expected = sample.expected;
      expected.records.resize(last);
      const Installed flip = attribute([&opened, last] {
        if (++opened == last) levels() &= ~kDiagnosticLevel;
        return 0;
      });
      EXPECT_EQ(buildOf(sample.builder, sample.json), expected);
      EXPECT_EQ(opened, last);
    }
  }
}

TEST(FlippedLevel, OfOtherSeveritiesLosesNoRecord) {
  for (const SampleBuild& sample : allSamples()) {
    SCOPED_TRACE(sample.name);
    const std::uint32_t before = levels();
    const Installed flip = attribute([] {
      levels() ^= ~kDiagnosticLevel;
      return 0;
    });
    EXPECT_EQ(buildOf(sample.builder, sample.json), sample.expected);
    levels() = before;
  }
}

TEST(FlippedLevel, ByAnotherThreadLosesRecordsAndNothingElse) {
  constexpr int kRounds = 3;
  const std::uint32_t before = levels();
  std::atomic<bool> stop{false};
  std::atomic<std::size_t> flips{0};
  std::thread flipper([&] {
    while (!stop) {
      levels() ^= kDiagnosticLevel;
      ++flips;
    }
  });
  // Every record waits for a flip while it is opened: with one core, too, the level changes within
  // a build.
  Installed flipAwaited = attribute([&flips] {
    const std::size_t seen = flips;
    while (flips == seen) std::this_thread::yield();
    return 0;
  });
  std::size_t written = 0;
  std::size_t lost = 0;
  for (const SampleBuild& sample : allSamples()) {
    SCOPED_TRACE(sample.name);
    for (int round = 0; round < kRounds; ++round) {
      bool claimed = false;
      const Records recognition =
          recordsOf([&] { claimed = sample.builder.canBuild(sample.json); });
      EXPECT_TRUE(claimed);
      EXPECT_TRUE(areAmong(recognition, sample.recognition));
      Outcome outcome = buildOf(sample.builder, sample.json);
      EXPECT_TRUE(areAmong(outcome.records, sample.expected.records));
      written += outcome.records.size();
      lost += sample.expected.records.size() - outcome.records.size();
      outcome.records = sample.expected.records;
      EXPECT_EQ(outcome, sample.expected);
    }
  }
  flipAwaited.reset();
  stop = true;
  flipper.join();
  levels() = before;
  EXPECT_GT(written, 0U);
  EXPECT_GT(lost, 0U);
}

}  // namespace
}  // namespace tessel::build::json::controls
