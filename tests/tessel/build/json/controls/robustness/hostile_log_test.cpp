#include <gtest/gtest.h>

#include <atomic>
#include <boost/log/attributes/function.hpp>
#include <boost/log/core/core.hpp>
#include <boost/log/core/record_view.hpp>
#include <boost/log/sinks/frontend_requirements.hpp>
#include <boost/log/sinks/sync_frontend.hpp>
#include <boost/log/sinks/text_ostream_backend.hpp>
#include <boost/log/utility/formatting_ostream.hpp>
#include <boost/make_shared.hpp>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>

#include "reference_host/logging/log_capture.hpp"
#include "sample_builds.hpp"
#include "tessel/shared/logging.hpp"

namespace tessel::build::json::controls {
namespace {

using contract::answerOf;
using contract::buildOf;
using contract::Outcome;
using contract::Records;
using reference_host::logging::LogCapture;

/// How often a log misbehaved.
std::atomic<std::size_t> misbehaved{0};

struct NotAnException {};

/// Undone when it goes.
using Installed = std::shared_ptr<void>;

Installed undoneBy(std::function<void()> undo) {
  return Installed(nullptr, [undo = std::move(undo)](void*) { undo(); });
}

/// A sink that formats every record, which ends as the action does.
Installed formattingSink(std::function<void()> act) {
  using Backend = boost::log::sinks::text_ostream_backend;
  const auto backend = boost::make_shared<Backend>();
  backend->add_stream(boost::make_shared<std::ostringstream>());
  const auto sink = boost::make_shared<boost::log::sinks::synchronous_sink<Backend>>(backend);
  sink->set_formatter(
      [act = std::move(act)](const boost::log::record_view&, boost::log::formatting_ostream& out) {
        out << "the first half";
        act();
      });
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

/// Throws exceptions and something else, in turn.
[[noreturn]] void throwInTurn() {
  if (++misbehaved % 2 == 0) throw NotAnException();
  throw std::runtime_error("the log is broken");
}

void throwAtTimes() {
  if (++misbehaved % 3 == 0) throw NotAnException();
}

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
    {"SinkThrows", [] { return formattingSink(&throwInTurn); }, Left::kSome},
    {"SinkThrowsAtTimes", [] { return formattingSink(&throwAtTimes); }, Left::kSome},
    {"SinkThrowsAndTheCoresHandlerToo",
     [] {
       const Installed sink = formattingSink(&throwInTurn);
       boost::log::core::get()->set_exception_handler([] { throwInTurn(); });
       return undoneBy([sink] { boost::log::core::get()->set_exception_handler({}); });
     },
     Left::kSome},
    {"FilterRejects", [] { return filter([] { return ++misbehaved == 0; }); }, Left::kNone},
    {"FilterRejectsEverySecond", [] { return filter([] { return ++misbehaved % 2 == 0; }); },
     Left::kSome},
    {"FilterThrows", [] { return filter([]() -> bool { throwInTurn(); }); }, Left::kNone},
    {"CoreDisabled",
     [] {
       ++misbehaved;
       boost::log::core::get()->set_logging_enabled(false);
       return undoneBy([] { boost::log::core::get()->set_logging_enabled(true); });
     },
     Left::kNone},
    {"AttributeThrows", [] { return attribute([]() -> int { throwInTurn(); }); }, Left::kNone},
    {"AttributeThrowsAtTimes", [] { return attribute([] { return throwAtTimes(), 0; }); },
     Left::kSome},
    {"NothingWrong", [] { return attribute([] { return ++misbehaved; }); }, Left::kAll},
};

class EveryBuildTest : public testing::TestWithParam<HostileLog> {};

INSTANTIATE_TEST_SUITE_P(HostileLogs, EveryBuildTest, testing::ValuesIn(kHostileLogs),
                         [](const auto& log) { return log.param.name; });

/// Holds what came of a call to the contract but for its records, of which some may be lost.
void expectButForRecords(Outcome outcome, const Outcome& expected, Left left) {
  const std::size_t written = outcome.records.size();
  EXPECT_TRUE(areAmong(outcome.records, expected.records));
  EXPECT_TRUE(left != Left::kAll || written == expected.records.size());
  EXPECT_TRUE(left != Left::kNone || written == 0);
  outcome.records = expected.records;
  EXPECT_EQ(outcome, expected);
}

TEST_P(EveryBuildTest, ComesOutAsWithoutTheLog) {
  for (const SampleBuild& sample : allSamples()) {
    SCOPED_TRACE(sample.name);
    misbehaved = 0;
    {
      // The sink of captures is there before, and so would see a record that goes on to a broken
      // one.
      const LogCapture before;
      const Installed installed = GetParam().install();
      expectButForRecords(answerOf(sample.builder, sample.json), sample.answer, GetParam().records);
      expectButForRecords(buildOf(sample.builder, sample.json), sample.built, GetParam().records);
    }
    EXPECT_GT(misbehaved, 0U);
    // Of what went wrong nothing stays.
    EXPECT_EQ(buildOf(sample.builder, sample.json), sample.built);
  }
}

TEST(ClearedLevel, EndsTheRecordsOfABuild) {
  for (const SampleBuild& sample : allSamples()) {
    SCOPED_TRACE(sample.name);
    for (std::size_t last = 1; last <= sample.built.records.size(); ++last) {
      SCOPED_TRACE("cleared while record " + std::to_string(last) + " is opened");
      std::size_t opened = 0;
      Outcome expected = sample.built;
      expected.records.resize(last);
      const Installed flip = attribute([&opened, last] {
        if (++opened == last) enabled_levels(shared::logging::getLogger()) &= ~std::uint32_t{8};
        return 0;
      });
      EXPECT_EQ(buildOf(sample.builder, sample.json), expected);
      EXPECT_EQ(opened, last);
    }
  }
}

}  // namespace
}  // namespace tessel::build::json::controls
