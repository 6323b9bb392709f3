/// @file
/// Sets up the allocator that stands in for the system's wherever this file is linked.
///
/// Nearly half of what the import of a usual document takes in a fresh process is the first touch
/// of its memory, page by page. So the first 32 MiB, which such an import does with, are asked for
/// in large pages. Beyond them large pages may cost more than they save: that depends on how the
/// system comes by them. Whoever sets MIMALLOC_LARGE_OS_PAGES decides for all memory instead.

#include <mimalloc.h>

namespace {

using Initializer = void (*)(int, char**, char**);

void askForLargePages(int, char**, char**) {
  mi_option_set_enabled_default(mi_option_large_os_pages, true);
}

/// This section is gone through before the initializers of the shared libraries, and these make the
/// first allocation, with which the allocator takes its first piece of memory.
[[gnu::section(".preinit_array"), gnu::used]] const Initializer kBeforeLibraries = askForLargePages;

/// The allocator reads the option again for every further piece: off from here on.
[[maybe_unused]] const bool kLargePagesAfterwards = [] {
  mi_option_set_enabled_default(mi_option_large_os_pages, false);
  return mi_option_is_enabled(mi_option_large_os_pages);
}();

}  // namespace
