#pragma once

/// @file
/// Counts the calling thread's allocations; the test program's operator new does the counting.

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

}  // namespace test_support
