/// @file
/// Sets up the allocator that stands in for the system's wherever this file is linked.

#include <mimalloc.h>

namespace {

using Initializer = void (*)(int, char**, char**);

/// Half of what the import of one document takes in a fresh process is the first touch of its
/// memory, page by page: let the system give larger pages where it has them. Whoever sets
/// MIMALLOC_LARGE_OS_PAGES has the last word.
void askForLargePages(int, char**, char**) {
  mi_option_set_enabled_default(mi_option_large_os_pages, true);
}

/// The allocator keeps to what it was told at its first allocation, which the initializers of the
/// shared libraries make, long before `main`: this section is gone through before them.
[[gnu::section(".preinit_array"), gnu::used]] const Initializer kBeforeLibraries = askForLargePages;

}  // namespace
