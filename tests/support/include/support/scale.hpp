#pragma once

/// @file
/// How large a large input is.

#include <cstddef>

namespace test_support {

/// What large inputs are divided by in a program that is instrumented by a sanitizer or for
/// coverage: there they take ten or a hundred times as long, and a call takes so much more of the
/// stack that less depth is enough.
inline constexpr std::size_t kScale = TESSEL_TEST_SCALE;

}  // namespace test_support
