#pragma once

/// @file
/// Platform macros of the embedded service runtime, under the names that CppMicroServices gives
/// them.

#if defined(_WIN32)
#error "the embedded service runtime reads ELF shared libraries; build with CppMicroServices here"
#endif

#define US_PLATFORM_POSIX
#if defined(__linux__)
#define US_PLATFORM_LINUX
#endif

#define US_ABI_EXPORT __attribute__((visibility("default")))
#define US_ABI_IMPORT __attribute__((visibility("default")))
#define US_ABI_LOCAL __attribute__((visibility("hidden")))

#define US_DEPRECATED __attribute__((deprecated))
#define US_UNUSED(x) (void)(x)

#define US_STR_(x) #x
#define US_STR(x) US_STR_(x)
#define US_CONCAT_(x, y) x##y
#define US_CONCAT(x, y) US_CONCAT_(x, y)

/// The name of a bundle's exported context setter is this prefix and the bundle's symbolic name.
#define US_SET_CTX_PREFIX _us_set_bundle_context_instance_
#define US_SET_CTX_FUNC(bsn) US_CONCAT(US_SET_CTX_PREFIX, bsn)
