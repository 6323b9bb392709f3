#include "reference_host/logging/log_capture.hpp"

#include <atomic>
#include <boost/log/attributes/value_extraction.hpp>
#include <boost/log/core/core.hpp>
#include <boost/log/core/record_view.hpp>
#include <boost/log/sinks/basic_sink_backend.hpp>
#include <boost/log/sinks/frontend_requirements.hpp>
#include <boost/log/sinks/unlocked_frontend.hpp>
#include <boost/make_shared.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>
#include <cstdint>
#include <mutex>
#include <utility>

#include "tessel/shared/logging.hpp"

namespace reference_host::logging {

namespace {

constexpr std::uint32_t kDiagnosticMask = std::uint32_t{1} << kDiagnosticLevelBit;

thread_local LogCapture* newestCapture = nullptr;

}  // namespace

/// Gives each record to the captures of the thread that pushes it.
class CaptureSink
    : public boost::log::sinks::basic_sink_backend<boost::log::sinks::concurrent_feeding> {
 public:
  void consume(const boost::log::record_view& record) {
    const auto severity = boost::log::extract<int>("Severity", record);
    const auto text = boost::log::extract<std::string>("Message", record);
    for (LogCapture* capture = newestCapture; capture != nullptr; capture = capture->outer_) {
      const bool before = std::exchange(capture->complete_, false);  // should the next line throw
      capture->records_.push_back({severity ? *severity : -1, text ? *text : std::string()});
      capture->complete_ = before;
    }
  }
};

namespace {

using CaptureFrontend = boost::log::sinks::unlocked_sink<CaptureSink>;

/// What all captures of the process share: the sink, and how diagnostics stood without them.
class SharedCaptureState {
 public:
  void addCapture() {
    const std::lock_guard<std::mutex> guard(mutex_);
    if (captures_ == 0) {
      addSink();
      wasEnabled_ = (levels().fetch_or(kDiagnosticMask) & kDiagnosticMask) != 0;
    }
    ++captures_;
  }

  void removeCapture() {
    const std::lock_guard<std::mutex> guard(mutex_);
    if (--captures_ != 0) return;
    if (!wasEnabled_) levels().fetch_and(~kDiagnosticMask);
  }

 private:
  static std::atomic<std::uint32_t>& levels() {
    return enabled_levels(tessel::shared::logging::getLogger());
  }

  /// The sink is never taken out: another thread that has seen diagnostics enabled may be about to
  /// open a record, and a core without sinks writes to the console.
  void addSink() {
    if (sinkAdded_) return;
    const auto sink = boost::make_shared<CaptureFrontend>(boost::make_shared<CaptureSink>());
    sink->set_filter(
        [](const boost::log::attribute_value_set&) { return newestCapture != nullptr; });
    boost::log::core::get()->add_sink(sink);
    sinkAdded_ = true;
  }

  std::mutex mutex_;
  std::size_t captures_ = 0;
  bool wasEnabled_ = false;
  bool sinkAdded_ = false;
};

SharedCaptureState& sharedState() {
  static SharedCaptureState state;
  return state;
}

}  // namespace

LogCapture::LogCapture() : outer_(newestCapture) {
  sharedState().addCapture();
  newestCapture = this;
}

LogCapture::~LogCapture() {
  LogCapture** link = &newestCapture;
  while (*link != this) link = &(*link)->outer_;
  *link = outer_;
  sharedState().removeCapture();
}

std::vector<std::string> LogCapture::takeTexts() {
  std::vector<std::string> texts;
  texts.reserve(records_.size());
  for (CapturedRecord& record : records_) texts.push_back(std::move(record.text));
  records_.clear();
  return texts;
}

}  // namespace reference_host::logging
