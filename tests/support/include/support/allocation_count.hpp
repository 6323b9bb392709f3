#pragma once

/// @file
/// Counts the calling thread's allocations, and lets them fail on demand; the test program's
/// operator new does both.

#include <cstddef>
#include <exception>
#include <new>

namespace test_support {

/// What the calling thread has asked for so far, whether or not it got it, and given back.
struct AllocationTally {
  std::size_t count = 0;
  std::size_t bytes = 0;
  std::size_t freed = 0;  ///< blocks
};
AllocationTally allocationTally() noexcept;

/// What an action asks for.
template <typename Action>
AllocationTally tallyOf(const Action& action) {
  const AllocationTally before = allocationTally();
  action();
  const AllocationTally after = allocationTally();
  return {after.count - before.count, after.bytes - before.bytes, after.freed - before.freed};
}

/// How many times an action allocates.
template <typename Action>
std::size_t allocationsOf(const Action& action) {
  return tallyOf(action).count;
}

/// Which allocations fail once some have succeeded.
enum class Refusal {
  kFromThenOn,  ///< every later one
  kOnce,        ///< the next one alone
};

/// While it lives, the calling thread's allocations fail once a number of them has succeeded.
class AllocationFailure {
 public:
  explicit AllocationFailure(std::size_t successes,
                             Refusal refusal = Refusal::kFromThenOn) noexcept;
  ~AllocationFailure();
  AllocationFailure(const AllocationFailure&) = delete;
  AllocationFailure& operator=(const AllocationFailure&) = delete;

  /// How many allocations have failed so far.
  std::size_t refused() const noexcept;
};

/// One round of a sweep: memory for a number of allocations.
class LimitedMemory {
 public:
  LimitedMemory(std::size_t successes, Refusal refusal) noexcept
      : successes_(successes), refusal_(refusal) {}

  /// Runs an action with no more than this memory.
  /// @return what the action threw, or null.
  template <typename Action>
  std::exception_ptr run(const Action& action) noexcept {
    const AllocationFailure failure(successes_, refusal_);
    std::exception_ptr thrown;
    try {
      action();
    } catch (...) {
      thrown = std::current_exception();
    }
    ranOut_ = failure.refused() > 0;
    return thrown;
  }

  /// How many allocations of an action succeed.
  std::size_t successes() const noexcept { return successes_; }
  /// Whether the last action met with a failure.
  bool ranOut() const noexcept { return ranOut_; }

 private:
  std::size_t successes_;
  Refusal refusal_;
  bool ranOut_ = false;
};

/// Calls a round with memory for no allocation, for one, two ... until its action gets all that it
/// asks for.
/// @return how many rounds ran out of memory.
template <typename Round>
std::size_t sweepAllocations(Refusal refusal, const Round& round) {
  for (std::size_t successes = 0;; ++successes) {
    LimitedMemory memory(successes, refusal);
    round(memory);
    if (!memory.ranOut()) return successes;
  }
}

/// Whether an exception is the one for want of memory.
inline bool isOutOfMemory(const std::exception_ptr& thrown) {
  try {
    if (thrown) std::rethrow_exception(thrown);
  } catch (const std::bad_alloc&) {
    return true;
  } catch (...) {
  }
  return false;
}

}  // namespace test_support
