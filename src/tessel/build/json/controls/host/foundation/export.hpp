#pragma once

/// @file
/// The one export macro of the host libraries' declarations.
///
/// A host library is compiled with TESSEL_HOST_BUILD defined; everyone else imports.

#if defined(_WIN32)
#if defined(TESSEL_HOST_BUILD)
#define TESSEL_HOST_API __declspec(dllexport)
#else
#define TESSEL_HOST_API __declspec(dllimport)
#endif
#else
#define TESSEL_HOST_API __attribute__((visibility("default")))
#endif
