#pragma once

/// @file
/// How large a large input is.

#include <cstddef>

namespace test_support {

/// What large inputs are divided by in a program that is instrumented by a sanitizer: there they
/// take ten times as long, and a call takes so much more of the stack that less depth is enough.
inline constexpr std::size_t kScale = TESSEL_INSTRUMENTED != 0 ? 10 : 1;

}  // namespace test_support
