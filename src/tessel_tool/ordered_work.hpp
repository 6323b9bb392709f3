#pragma once

/// @file
/// Work that is done several items at a time, with results in the order of the items.

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

namespace tessel_tool {

/// Takes items from `next`, works on up to `jobs` of them at a time, and hands the results to
/// `finish` in the order of the items. `next` and `finish` are called by one thread at a time each,
/// `next` not again once it gave nothing.
/// No more than `jobs` items or results exist at a time, and a result is handed over as soon as
/// those before it were, without waiting for more items.
///
/// Ends when `next` gives nothing, or `finish` says false; what is still being worked on then is
/// dropped. An exception from any of the three ends it too and is thrown on.
template <typename Item, typename Result, typename Next, typename Work, typename Finish>
class OrderedWork {
 public:
  OrderedWork(Next next, Work work, Finish finish)
      : next_(std::move(next)), work_(std::move(work)), finish_(std::move(finish)) {}

  void run(std::size_t jobs) {
    std::vector<std::thread> others;
    try {
      for (std::size_t index = 1; index < jobs; ++index) others.emplace_back([this] { serve(); });
    } catch (...) {
      stop(std::current_exception());
    }
    serve();
    for (std::thread& thread : others) thread.join();
    if (failure_) std::rethrow_exception(failure_);
  }

 private:
  void serve() noexcept {
    try {
      while (takeWorkAndFinish()) continue;
    } catch (...) {
      stop(std::current_exception());
    }
  }

  /// Deals with one item; false when there is nothing more to do.
  bool takeWorkAndFinish() {
    std::optional<Item> item;
    std::size_t number = 0;
    {
      const std::lock_guard<std::mutex> taking(takeMutex_);
      if (ended_ || stopped_) return false;
      ended_ = true;  // unless there is an item: a call that throws is the last one, too
      item = next_();
      if (!item) return false;
      ended_ = false;
      number = taken_++;
    }
    Result result = work_(*item);
    std::unique_lock<std::mutex> finishing(finishMutex_);
    turn_.wait(finishing, [&] { return stopped_ || finished_ == number; });
    if (stopped_) return false;
    if (!finish_(std::move(result))) stopped_ = true;
    ++finished_;
    turn_.notify_all();
    return !stopped_;
  }

  void stop(std::exception_ptr failure) noexcept {
    const std::lock_guard<std::mutex> guard(finishMutex_);
    if (!failure_) failure_ = std::move(failure);
    stopped_ = true;
    turn_.notify_all();
  }

  Next next_;
  Work work_;
  Finish finish_;

  std::mutex takeMutex_;
  std::size_t taken_ = 0;
  bool ended_ = false;

  std::mutex finishMutex_;
  std::condition_variable turn_;
  std::size_t finished_ = 0;
  std::atomic<bool> stopped_{false};  // written under the lock above
  std::exception_ptr failure_;
};

/// Runs `OrderedWork` on what `next` gives.
template <typename Next, typename Work, typename Finish>
void runInOrder(std::size_t jobs, Next next, Work work, Finish finish) {
  using Item = typename decltype(next())::value_type;
  using Result = decltype(work(std::declval<Item&>()));
  OrderedWork<Item, Result, Next, Work, Finish>(std::move(next), std::move(work), std::move(finish))
      .run(jobs);
}

}  // namespace tessel_tool
