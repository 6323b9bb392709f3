#pragma once

/// @file
/// Recognition to the letter: each builder converts the object to a member map of its own, and
/// looks up and compares in that.

#include <cstddef>

#include "foundation/json.hpp"

namespace benchmarks {

/// One question for each builder, in the order in which a host asks them.
/// @return how many say yes.
std::size_t recognizeLiterally(const foundation::json::Value& json);

/// The same questions, asked of the bundle's builders.
std::size_t recognize(const foundation::json::Value& json);

}  // namespace benchmarks
