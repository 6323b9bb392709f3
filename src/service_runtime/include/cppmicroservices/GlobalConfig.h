#pragma once

/// @file
/// What depends on the platform, under the names that CppMicroServices gives it.

#if defined(_WIN32)
#error "the embedded service runtime reads ELF shared libraries; build with CppMicroServices here"
#endif

#define US_ABI_EXPORT __attribute__((visibility("default")))
