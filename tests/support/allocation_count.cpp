#include "support/allocation_count.hpp"

#include <cstdlib>
#include <limits>
#include <new>

namespace {

thread_local std::size_t allocations = 0;
thread_local std::size_t successesLeft = std::numeric_limits<std::size_t>::max();

void* allocate(std::size_t size) noexcept {
  ++allocations;
  if (successesLeft == 0) return nullptr;
  --successesLeft;
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
  std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace test_support {

std::size_t allocationCount() noexcept {
  return allocations;
}

AllocationFailure::AllocationFailure(std::size_t successes) noexcept {
  successesLeft = successes;
}

AllocationFailure::~AllocationFailure() {
  successesLeft = std::numeric_limits<std::size_t>::max();
}

}  // namespace test_support
