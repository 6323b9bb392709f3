#include "reference_host/json/read_watch.hpp"

#include <atomic>

namespace reference_host::json {

namespace {

thread_local ReadObserver* observerOfThread = nullptr;

}  // namespace

ReadWatch::ReadWatch(ReadObserver& observer) noexcept {
  observerOfThread = &observer;
  foundation::json::detail::readWatches.fetch_add(1, std::memory_order_relaxed);
}

ReadWatch::~ReadWatch() {
  foundation::json::detail::readWatches.fetch_sub(1, std::memory_order_relaxed);
  observerOfThread = nullptr;
}

ReadObserver* ReadWatch::observer() noexcept {
  return observerOfThread;
}

}  // namespace reference_host::json
