#pragma once

/// @file
/// The known word that a mistyped one most likely stands for.

#include <string>
#include <string_view>
#include <vector>

#include "foundation/export.hpp"

namespace reference_host::diagnosis {

/// The candidate that a word may be a misspelling of: equal but for case, hyphens, underscores and
/// spaces, or else the first of those that take the fewest edits to come to, which are two at most
/// and at most half as many as the word has characters. An edit puts in, leaves out or replaces a
/// character, or swaps two neighbours. Empty when no candidate is so near; a word is no misspelling
/// of itself.
TESSEL_HOST_API std::string nearestWord(std::string_view word,
                                        const std::vector<std::string>& candidates);

/// The candidate that says more or less of the same: its words ("default", "Value") are in their
/// order among those of the word or the other way round, and three letters do for the first one:
/// "minimum" for "min", "step" for "stepSize". Of several the shortest that says more, or else the
/// longest that says less. Empty when there is none.
TESSEL_HOST_API std::string relatedWord(std::string_view word,
                                        const std::vector<std::string>& candidates);

/// The word in small letters (ASCII).
std::string lowered(std::string_view word);

}  // namespace reference_host::diagnosis
