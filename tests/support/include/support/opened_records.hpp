#pragma once

/// @file
/// Counting the records that are opened, whoever writes them.

#include <atomic>
#include <boost/log/core/core.hpp>
#include <boost/log/core/record_view.hpp>
#include <boost/log/sinks/basic_sink_backend.hpp>
#include <boost/log/sinks/frontend_requirements.hpp>
#include <boost/log/sinks/unlocked_frontend.hpp>
#include <boost/make_shared.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>
#include <cstddef>

namespace test_support {

/// Counts the records that anybody offers to the logging core while it lives, and accepts none. It
/// does not switch diagnostics on. What a `LogCapture` collects is not affected.
class OpenedRecordCounter {
 public:
  OpenedRecordCounter() {
    sink_->set_filter([count = count_](const auto& /*attributes*/) {
      ++*count;
      return false;
    });
    boost::log::core::get()->add_sink(sink_);
  }
  ~OpenedRecordCounter() { boost::log::core::get()->remove_sink(sink_); }
  OpenedRecordCounter(const OpenedRecordCounter&) = delete;
  OpenedRecordCounter& operator=(const OpenedRecordCounter&) = delete;

  std::size_t count() const noexcept { return *count_; }

 private:
  struct Backend : boost::log::sinks::basic_sink_backend<boost::log::sinks::concurrent_feeding> {
    void consume(const boost::log::record_view& /*record*/) {}
  };
  using Sink = boost::log::sinks::unlocked_sink<Backend>;
  using Count = std::atomic<std::size_t>;

  // Shared with the filter, which a record being opened elsewhere may keep alive.
  boost::shared_ptr<Count> count_ = boost::make_shared<Count>(std::size_t{0});
  boost::shared_ptr<Sink> sink_ = boost::make_shared<Sink>(boost::make_shared<Backend>());
};

}  // namespace test_support
