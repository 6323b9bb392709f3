#pragma once

/// @file
/// Where values and member names stand in a JSON text, found by going over the text once.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/export.hpp"

namespace reference_host::json {

/// A character of a text. Both count from 1. A line ends with a line feed, which may follow a
/// carriage return; columns are Unicode code points.
struct TextPlace {
  std::size_t line = 1;
  std::size_t column = 1;

  friend bool operator==(const TextPlace& left, const TextPlace& right) noexcept {
    return left.line == right.line && left.column == right.column;
  }
};

/// The place of the character at an offset, which may be the end of the text.
TESSEL_HOST_API TextPlace placeAt(std::string_view utf8, std::size_t offset);

struct TextRange {
  TextPlace begin;
  TextPlace end;  ///< behind the last character
};

/// Where the value at a JSON pointer stands.
struct ValuePlace {
  TextRange value;
  /// The name of the member that the value is, with its quotes; none for an element and the
  /// outermost value.
  std::optional<TextRange> key;
  /// How many of the pointer's last tokens lead to nothing. The place is that of the value around
  /// them if there are any.
  std::size_t missingTokens = 0;
};

/// The places of the values at some pointers, in their order. Of members with one name the last one
/// counts, as in a parsed value.
/// @pre `parse` accepts the text, which has no byte order mark; each pointer is well-formed.
TESSEL_HOST_API std::vector<ValuePlace> findValues(std::string_view utf8,
                                                   const std::vector<std::string_view>& pointers);

/// A member overridden by a later one of the same name in the same object.
struct DuplicateMember {
  std::string name;
  std::string pointer;  ///< of both members
  TextRange key;        ///< the name of the one that does not hold, with its quotes
  TextRange next;       ///< that of the one that replaces it
};

/// All such members in the order of their places, also those inside of others.
/// @pre `parse` accepts the text, which has no byte order mark.
TESSEL_HOST_API std::vector<DuplicateMember> findDuplicates(std::string_view utf8);

}  // namespace reference_host::json
