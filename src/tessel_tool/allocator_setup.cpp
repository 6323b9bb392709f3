/// @file
/// Sets up the allocator that stands in for the system's wherever this file is linked.
///
/// Nearly half of what the import of a usual document takes in a fresh process is the first touch
/// of its memory, page by page. So the first 32 MiB, which such an import does with, are asked for
/// in large pages. Beyond them large pages may cost more than they save: that depends on how the
/// system comes by them. Whoever sets MIMALLOC_LARGE_OS_PAGES decides for all memory instead.
///
/// The allocator's own operator new is compiled as C in most packages and ends the process where
/// there is no memory. The operators here throw as the standard says.

#include <mimalloc.h>
#include <unistd.h>

#include <cstddef>
#include <cstdlib>
#include <new>
#include <string_view>

namespace {

using Initializer = void (*)(int, char**, char**);

/// Makes the first allocation, with which the allocator takes its first piece of memory. Without it
/// the initializers of the shared libraries would end the process without a word.
void takeFirstPiece(int, char**, char**) {
  mi_option_set_enabled_default(mi_option_large_os_pages, true);
  void* const memory = mi_malloc(1);
  if (memory == nullptr) {
    constexpr std::string_view kMessage = "tessel: out of memory\n";
    static_cast<void>(!write(STDERR_FILENO, kMessage.data(), kMessage.size()));
    _exit(EXIT_FAILURE);
  }
  mi_free(memory);
}

/// This section is gone through before the initializers of the shared libraries.
[[gnu::section(".preinit_array"), gnu::used]] const Initializer kBeforeLibraries = takeFirstPiece;

/// The allocator reads the option again for every further piece: off from here on.
[[maybe_unused]] const bool kLargePagesAfterwards = [] {
  mi_option_set_enabled_default(mi_option_large_os_pages, false);
  return mi_option_is_enabled(mi_option_large_os_pages);
}();

/// What an operator new does: asks again as long as there is a handler that may have freed some.
template <typename Allocate>
void* allocateOrThrow(const Allocate& allocate) {
  for (;;) {
    if (void* memory = allocate()) return memory;
    const std::new_handler handler = std::get_new_handler();
    if (handler == nullptr) throw std::bad_alloc();
    handler();
  }
}

template <typename Allocate>
void* allocateOrNull(const Allocate& allocate) noexcept {
  try {
    return allocateOrThrow(allocate);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

/// Memory of a size, aligned as asked for or as any type needs it.
auto allocation(std::size_t size) noexcept {
  return [=] { return mi_malloc(size); };
}
auto allocation(std::size_t size, std::align_val_t alignment) noexcept {
  return [=] { return mi_malloc_aligned(size, static_cast<std::size_t>(alignment)); };
}

}  // namespace

void* operator new(std::size_t size) {
  return allocateOrThrow(allocation(size));
}
void* operator new[](std::size_t size) {
  return allocateOrThrow(allocation(size));
}
void* operator new(std::size_t size, std::align_val_t alignment) {
  return allocateOrThrow(allocation(size, alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
  return allocateOrThrow(allocation(size, alignment));
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return allocateOrNull(allocation(size));
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return allocateOrNull(allocation(size));
}
void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  return allocateOrNull(allocation(size, alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  return allocateOrNull(allocation(size, alignment));
}

void operator delete(void* memory) noexcept {
  mi_free(memory);
}
void operator delete[](void* memory) noexcept {
  mi_free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  mi_free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  mi_free(memory);
}
void operator delete(void* memory, std::align_val_t) noexcept {
  mi_free(memory);
}
void operator delete[](void* memory, std::align_val_t) noexcept {
  mi_free(memory);
}
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
  mi_free(memory);
}
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept {
  mi_free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
  mi_free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
  mi_free(memory);
}
void operator delete(void* memory, std::align_val_t, const std::nothrow_t&) noexcept {
  mi_free(memory);
}
void operator delete[](void* memory, std::align_val_t, const std::nothrow_t&) noexcept {
  mi_free(memory);
}
