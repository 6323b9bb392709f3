#pragma once

/// @file
/// JSON text to a value.

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

#include "foundation/export.hpp"
#include "foundation/json.hpp"

namespace reference_host::json {

/// The deepest nesting of arrays and objects that a text may have.
constexpr std::size_t kDeepestNesting = 1000;

/// A text that is refused, and where. `what()` is "line L, column C: reason".
class TESSEL_HOST_API ParseError : public std::runtime_error {
 public:
  ParseError(std::size_t line, std::size_t column, const std::string& reason);

  /// Counted from 1; a line ends with a line feed.
  std::size_t line() const noexcept { return line_; }
  /// Counted from 1, in Unicode code points of the line; a byte order mark does not count.
  std::size_t column() const noexcept { return column_; }
  /// What was wrong, without the place.
  const std::string& reason() const noexcept { return reason_; }

 private:
  std::size_t line_;
  std::size_t column_;
  std::string reason_;
};

/// What a parse reports besides the value.
struct ParseReport {
  /// How many members are overridden by a later one of the same name in the same object.
  /// `findDuplicates` finds their places in a second pass over the text.
  std::size_t duplicateMembers = 0;
  /// The text without its byte order mark, for whoever looks for places in it. It lies in the text
  /// or the string that was given and lasts as long as that is left alone.
  std::string_view text;
};

/// The value that a text of exactly one JSON value stands for.
///
/// Every number becomes a `double`, the nearest one, an integer of any length included; a number
/// too small for a double is 0 and keeps its sign. Of two members with one name the last counts:
/// that is no error, and counted in a report. A leading byte order mark is skipped. Nothing outside
/// the text is read, so it needs no padding.
///
/// The error names the first fault of the text. A container or a string that is not closed is
/// reported where it opens, a number where it starts, an escape at its backslash.
///
/// @throws ParseError on whatever is not JSON by RFC 8259, on invalid UTF-8, an escape of a lone
///   surrogate, a number too large for a double, nesting deeper than `kDeepestNesting`, and a text
///   of 4 GiB or more.
TESSEL_HOST_API foundation::json::Value parse(std::string_view utf8);
/// @param report is overwritten.
TESSEL_HOST_API foundation::json::Value parse(std::string_view utf8, ParseReport& report);

/// The same for a text that is given up. It is read where it lies, which saves the memory of a
/// second one if the string has room for some 70 bytes more.
TESSEL_HOST_API foundation::json::Value parseInPlace(std::string utf8);
/// @param utf8 what it holds afterwards is not specified, but for the part that `report.text` is.
/// @param report is overwritten.
TESSEL_HOST_API foundation::json::Value parseInPlace(std::string& utf8, ParseReport& report);

}  // namespace reference_host::json
