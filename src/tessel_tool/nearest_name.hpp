#pragma once

/// @file
/// The known name that a mistyped one most likely stands for.

#include <string_view>
#include <vector>

namespace tessel_tool {

/// The first of the names that takes the fewest edits to come to from the word: a character put in,
/// left out or replaced, or two neighbours swapped. Empty when that is more than half the length of
/// the longer of the two.
std::string_view nearestName(std::string_view word, const std::vector<std::string_view>& names);

}  // namespace tessel_tool
