#pragma once

/// @file
/// The export macros of the host libraries' declarations: TESSEL_HOST_API for what a library
/// defines, TESSEL_HOST_TYPE for a type that a header defines whole and that is caught or
/// identified across libraries.
///
/// A host library is compiled with TESSEL_HOST_BUILD defined; everyone else imports.

#if defined(_WIN32)
#if defined(TESSEL_HOST_BUILD)
#define TESSEL_HOST_API __declspec(dllexport)
#else
#define TESSEL_HOST_API __declspec(dllimport)
#endif
#define TESSEL_HOST_TYPE
#else
#define TESSEL_HOST_API __attribute__((visibility("default")))
#define TESSEL_HOST_TYPE __attribute__((visibility("default")))
#endif
