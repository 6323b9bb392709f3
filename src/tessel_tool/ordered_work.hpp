#pragma once

/// @file
/// Work that is done several items at a time, with results in the order of the items.

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <mutex>
#include <new>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

namespace tessel_tool {

/// Takes items from `next`, works on several of them at a time, and hands the results to `finish`
/// in the order of the items. `next` and `finish` are called by one thread at a time each, `next`
/// not again once it gave nothing.
/// No more than `jobs` items or results exist at a time, and a result is handed over as soon as
/// those before it were, without waiting for more items. A result whose turn has not come is put
/// aside, and its thread goes on with the next item.
///
/// Ends when `next` gives nothing, or `finish` says false; what is still being worked on then is
/// dropped. An exception from any of the three ends it too and is thrown on. Where the system has
/// no more threads, or no memory for them, fewer items than `jobs` are worked on at a time.
template <typename Item, typename Result, typename Next, typename Work, typename Finish>
class OrderedWork {
 public:
  OrderedWork(std::size_t jobs, Next next, Work work, Finish finish)
      : next_(std::move(next)),
        work_(std::move(work)),
        finish_(std::move(finish)),
        results_(jobs) {}

  void run(std::size_t threads) {
    std::vector<std::thread> others;
    try {
      for (std::size_t index = 1; index < threads; ++index) {
        others.emplace_back([this] {
          if (canAllocate()) serve();
        });
      }
    } catch (const std::exception&) {
      // No more threads can be had: those that there are do the work.
    }
    serve();
    for (std::thread& thread : others) thread.join();
    if (failure_) std::rethrow_exception(failure_);
  }

 private:
  /// Whether the calling thread gets memory. An allocator may take a large piece for each thread;
  /// one that gets none would make its items fail, and leaves them to the others.
  static bool canAllocate() noexcept {
    void* const memory = ::operator new(1, std::nothrow);
    ::operator delete(memory);
    return memory != nullptr;
  }

  void serve() noexcept {
    try {
      std::size_t number = 0;
      while (std::optional<Item> item = take(number)) {
        Result result = work_(*item);
        item.reset();
        finishFrom(number, std::move(result));
      }
    } catch (...) {
      stop(std::current_exception());
    }
  }

  /// The next item, once there is room for it; nothing when there is nothing more to do.
  std::optional<Item> take(std::size_t& number) {
    const std::lock_guard<std::mutex> taking(takeMutex_);
    {
      std::unique_lock<std::mutex> lock(mutex_);
      room_.wait(lock, [this] { return stopped_ || taken_ - finished_ < results_.size(); });
      if (ended_ || stopped_) return std::nullopt;
    }
    ended_ = true;  // unless there is an item: a call that throws is the last one, too
    std::optional<Item> item = next_();
    ended_ = !item;
    if (item) number = taken_++;
    return item;
  }

  /// Puts the result aside, and hands over all whose turn has come if it is the first of them.
  void finishFrom(std::size_t number, Result result) {
    std::unique_lock<std::mutex> lock(mutex_);
    results_[number % results_.size()] = std::move(result);
    if (number != finished_) return;  // whoever finishes the one before it goes on with it
    while (!stopped_) {
      std::optional<Result> first =
          std::exchange(results_[finished_ % results_.size()], std::nullopt);
      if (!first) return;
      lock.unlock();
      const bool goOn = finish_(*std::exchange(first, std::nullopt));
      lock.lock();
      ++finished_;
      if (!goOn) stopped_ = true;
      room_.notify_one();  // only one thread takes at a time
    }
  }

  void stop(std::exception_ptr failure) noexcept {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (!failure_) failure_ = std::move(failure);
    stopped_ = true;
    room_.notify_one();
  }

  Next next_;
  Work work_;
  Finish finish_;

  std::mutex takeMutex_;  // for the two below, and calls of `next`
  std::size_t taken_ = 0;
  bool ended_ = false;

  std::mutex mutex_;  // for all below; locked behind the other where both are
  std::condition_variable room_;
  std::vector<std::optional<Result>> results_;  // those put aside, by number modulo their count
  std::size_t finished_ = 0;
  bool stopped_ = false;
  std::exception_ptr failure_;
};

/// Runs `OrderedWork` on what `next` gives, with no more threads than can be of use: one for each
/// processor, one that waits for an item, and one that waits for a result to be taken.
template <typename Next, typename Work, typename Finish>
void runInOrder(std::size_t jobs, Next next, Work work, Finish finish) {
  using Item = typename decltype(next())::value_type;
  using Result = decltype(work(std::declval<Item&>()));
  OrderedWork<Item, Result, Next, Work, Finish>(jobs, std::move(next), std::move(work),
                                                std::move(finish))
      .run(std::min<std::size_t>(jobs, std::thread::hardware_concurrency() + 2));
}

}  // namespace tessel_tool
