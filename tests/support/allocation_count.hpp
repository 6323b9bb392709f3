#pragma once

/// @file
/// Counts the calling thread's allocations, and lets them fail on demand; the test program's
/// operator new does both.

#include <cstddef>

namespace test_support {

/// How many times the calling thread has allocated so far.
std::size_t allocationCount() noexcept;

/// How many times an action allocates.
template <typename Action>
std::size_t allocationsOf(const Action& action) {
  const std::size_t before = allocationCount();
  action();
  return allocationCount() - before;
}

/// While it lives, the calling thread's allocations fail once a number of them has succeeded.
class AllocationFailure {
 public:
  explicit AllocationFailure(std::size_t successes) noexcept;
  ~AllocationFailure();
  AllocationFailure(const AllocationFailure&) = delete;
  AllocationFailure& operator=(const AllocationFailure&) = delete;
};

}  // namespace test_support
