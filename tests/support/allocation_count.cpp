#include "support/allocation_count.hpp"

#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr std::size_t kUnlimited = std::numeric_limits<std::size_t>::max();

thread_local test_support::AllocationTally tally;
thread_local std::size_t successesLeft = kUnlimited;
thread_local std::size_t refusals = 0;
thread_local test_support::Refusal refusal = test_support::Refusal::kFromThenOn;

void* allocate(std::size_t size) noexcept {
  ++tally.count;
  tally.bytes += size;
  if (successesLeft == 0) {
    ++refusals;
    if (refusal == test_support::Refusal::kOnce) successesLeft = kUnlimited;
    return nullptr;
  }
  if (successesLeft != kUnlimited) --successesLeft;
  return std::malloc(size == 0 ? 1 : size);
}

}  // namespace

void* operator new(std::size_t size) {
  void* memory = allocate(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return allocate(size);
}
void operator delete(void* memory) noexcept {
  if (memory != nullptr) ++tally.freed;
  std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
  operator delete(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  operator delete(memory);
}

namespace test_support {

AllocationTally allocationTally() noexcept {
  return tally;
}

AllocationFailure::AllocationFailure(std::size_t successes, Refusal mode) noexcept {
  refusal = mode;
  refusals = 0;
  successesLeft = successes;
}

AllocationFailure::~AllocationFailure() {
  successesLeft = kUnlimited;
}

std::size_t AllocationFailure::refused() const noexcept {
  return refusals;
}

}  // namespace test_support
