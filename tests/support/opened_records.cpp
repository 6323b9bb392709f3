#include "support/opened_records.hpp"

#include <atomic>
#include <boost/log/attributes/attribute_value_set.hpp>
#include <boost/log/core/core.hpp>
#include <boost/log/core/record_view.hpp>
#include <boost/log/sinks/basic_sink_backend.hpp>
#include <boost/log/sinks/frontend_requirements.hpp>
#include <boost/log/sinks/unlocked_frontend.hpp>
#include <boost/make_shared.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>

namespace test_support {

namespace {

class RejectingSink
    : public boost::log::sinks::basic_sink_backend<boost::log::sinks::concurrent_feeding> {
 public:
  void consume(const boost::log::record_view&) {}
};

using RejectingFrontend = boost::log::sinks::unlocked_sink<RejectingSink>;

}  // namespace

class OpenedRecordCounter::Impl {
 public:
  Impl() : sink_(boost::make_shared<RejectingFrontend>(boost::make_shared<RejectingSink>())) {
    sink_->set_filter([count = count_](const boost::log::attribute_value_set&) {
      ++*count;
      return false;
    });
    boost::log::core::get()->add_sink(sink_);
  }
  ~Impl() { boost::log::core::get()->remove_sink(sink_); }
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  std::size_t count() const noexcept { return *count_; }

 private:
  using Count = std::atomic<std::size_t>;
  // Shared with the filter, which a record being opened elsewhere may keep alive.
  boost::shared_ptr<Count> count_ = boost::make_shared<Count>(std::size_t{0});
  boost::shared_ptr<RejectingFrontend> sink_;
};

OpenedRecordCounter::OpenedRecordCounter() : impl_(std::make_unique<Impl>()) {}

OpenedRecordCounter::~OpenedRecordCounter() = default;

std::size_t OpenedRecordCounter::count() const noexcept {
  return impl_->count();
}

}  // namespace test_support
