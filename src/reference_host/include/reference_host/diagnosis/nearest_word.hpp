#pragma once

/// @file
/// The known word that a mistyped one most likely stands for.

#include <string>
#include <string_view>
#include <vector>

#include "foundation/export.hpp"

namespace reference_host::diagnosis {

/// The candidates that a word may be a misspelling of: the one that is equal but for case, hyphens,
/// underscores and spaces, or else those that take the fewest edits to come to, which are two at
/// most and at most half as many as the word has characters. An edit puts in, leaves out or
/// replaces a character, or swaps two neighbours. A word is no misspelling of itself.
TESSEL_HOST_API std::vector<std::string> nearestWords(std::string_view word,
                                                      const std::vector<std::string>& candidates);

/// The first of them; empty when there is none.
TESSEL_HOST_API std::string nearestWord(std::string_view word,
                                        const std::vector<std::string>& candidates);

/// The candidates that say more of the same, or else the longest of those that say less: the words
/// of the one ("default", "Value") are in their order among those of the other, and three letters
/// do for the first one: "minimum" for "min", "step" for "stepSize". What says even more than
/// another candidate is left out: "maxLinkedVariable" for "max" where there is "maximum".
TESSEL_HOST_API std::vector<std::string> relatedWords(std::string_view word,
                                                      const std::vector<std::string>& candidates);

/// The word in small letters (ASCII).
std::string lowered(std::string_view word);

}  // namespace reference_host::diagnosis
