#include "ordered_work.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <numeric>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace tessel_tool {
namespace {

/// Gives the numbers from 0 to below the count.
class Numbers {
 public:
  explicit Numbers(int count) : count_(count) {}
  std::optional<int> operator()() {
    return given_ == count_ ? std::nullopt : std::optional<int>(given_++);
  }

 private:
  int given_ = 0;
  int count_;
};

std::vector<int> upTo(int count) {
  std::vector<int> numbers(static_cast<std::size_t>(count));
  std::iota(numbers.begin(), numbers.end(), 0);
  return numbers;
}

/// What one thread waits for and another brings about.
class Event {
 public:
  void set() {
    const std::lock_guard<std::mutex> lock(mutex_);
    set_ = true;
    changed_.notify_all();
  }
  /// @return whether it came about in time.
  bool wait() {
    std::unique_lock<std::mutex> lock(mutex_);
    return changed_.wait_for(lock, std::chrono::seconds(60), [this] { return set_; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  bool set_ = false;
};

const std::size_t kJobs[] = {1, 2, 4, 9};

TEST(OrderedWork, ResultsKeepTheOrderOfTheItems) {
  for (const std::size_t jobs : kJobs) {
    for (const int items : {0, 300}) {
      SCOPED_TRACE(jobs);
      std::vector<int> results;
      runInOrder(
          jobs, Numbers(items),
          [](int number) {
            // The first of each ten takes longest.
            if (number % 10 == 0) std::this_thread::sleep_for(std::chrono::milliseconds(1));
            return number;
          },
          [&](int number) {
            results.push_back(number);
            return true;
          });
      EXPECT_EQ(results, upTo(items));
    }
  }
}

TEST(OrderedWork, NoMoreItemsThanJobsExistAtATime) {
  for (const std::size_t jobs : kJobs) {
    SCOPED_TRACE(jobs);
    std::atomic<std::size_t> alive{0};
    std::atomic<std::size_t> mostAlive{0};
    int left = 200;
    runInOrder(
        jobs,
        [&]() -> std::optional<int> {
          if (left-- == 0) return std::nullopt;
          const std::size_t now = ++alive;
          if (now > mostAlive) mostAlive = now;
          return left;
        },
        [](int number) {
          if (number % 7 == 0) std::this_thread::sleep_for(std::chrono::microseconds(300));
          return number;
        },
        [&](int) {
          --alive;
          return true;
        });
    EXPECT_EQ(alive, 0U);
    EXPECT_LE(mostAlive, jobs);
  }
}

TEST(OrderedWork, WorksOnAsManyItemsAsThereAreJobs) {
  constexpr int kTogether = 3;
  std::atomic<int> arrived{0};
  std::atomic<int> met{0};
  Event allArrived;
  runInOrder(
      kTogether, Numbers(kTogether),
      [&](int number) {
        if (++arrived == kTogether) allArrived.set();
        met += allArrived.wait() ? 1 : 0;
        return number;
      },
      [](int) { return true; });
  EXPECT_EQ(met, kTogether);
}

TEST(OrderedWork, AResultThatHasToWaitHoldsNoThread) {
  // Two threads work, and the first item takes until the last has been worked on.
  constexpr int kItems = 5;
  Event lastWorked;
  bool inTime = false;
  std::vector<int> results;
  const auto work = [&](int number) {
    if (number == kItems - 1) lastWorked.set();
    if (number == 0) inTime = lastWorked.wait();
    return number;
  };
  const auto finish = [&](int number) {
    results.push_back(number);
    return true;
  };
  OrderedWork<int, int, Numbers, decltype(work), decltype(finish)>(kItems, Numbers(kItems), work,
                                                                   finish)
      .run(2);
  EXPECT_TRUE(inTime);
  EXPECT_EQ(results, upTo(kItems));
}

TEST(OrderedWork, MoreJobsThanProcessorsAreNotMoreThreads) {
  std::mutex mutex;
  std::set<std::thread::id> threads;
  runInOrder(
      256, Numbers(2000),
      [&](int number) {
        std::this_thread::sleep_for(std::chrono::microseconds(100));
        const std::lock_guard<std::mutex> lock(mutex);
        threads.insert(std::this_thread::get_id());
        return number;
      },
      [](int) { return true; });
  EXPECT_LE(threads.size(), std::thread::hardware_concurrency() + 2);
}

TEST(OrderedWork, AResultIsFinishedWithoutWaitingForMoreItems) {
  Event firstFinished;
  bool inTime = false;
  Numbers numbers(2);
  runInOrder(
      4,
      [&, given = 0]() mutable {
        if (given++ == 1) inTime = firstFinished.wait();
        return numbers();
      },
      [](int number) { return number; },
      [&](int) {
        firstFinished.set();
        return true;
      });
  EXPECT_TRUE(inTime);
}

TEST(OrderedWork, StopsWhenToldTo) {
  for (const std::size_t jobs : kJobs) {
    SCOPED_TRACE(jobs);
    std::vector<int> results;
    runInOrder(
        jobs, Numbers(1000), [](int number) { return number; },
        [&](int number) {
          results.push_back(number);
          return number != 4;
        });
    EXPECT_EQ(results, upTo(5));
  }
}

TEST(OrderedWork, ExceptionsOfAnyStepAreThrownOn) {
  for (const std::size_t jobs : kJobs) {
    for (const std::string failing : {"next", "work", "finish"}) {
      SCOPED_TRACE(failing + " with " + std::to_string(jobs));
      const auto failAt = [&](const std::string& step, int number) {
        if (step == failing && number == 20) throw std::runtime_error(step);
        return number;
      };
      Numbers numbers(1000);
      int finished = 0;
      try {
        runInOrder(
            jobs,
            [&]() -> std::optional<int> {
              const std::optional<int> number = numbers();
              if (number) failAt("next", *number);
              return number;
            },
            [&](int number) { return failAt("work", number); },
            [&](int number) {
              failAt("finish", number);
              ++finished;
              return true;
            });
        ADD_FAILURE() << "nothing was thrown";
      } catch (const std::runtime_error& error) {
        EXPECT_EQ(error.what(), failing);
      }
      EXPECT_LE(finished, 20);
    }
  }
}

}  // namespace
}  // namespace tessel_tool
