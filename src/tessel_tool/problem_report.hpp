#pragma once

/// @file
/// Problems with their places in a text, for people and for programs.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "reference_host/diagnosis/problem.hpp"
#include "reference_host/json/text_places.hpp"
#include "reference_host/json/text_writer.hpp"

namespace tessel_tool {

struct PlacedProblem {
  reference_host::diagnosis::Problem problem;
  reference_host::json::TextRange place;  ///< lines as counted in the text
};

/// The problems with their places, in the order of these.
/// @param text what was parsed, without a byte order mark.
/// @param others pointers to values that are to be found with the same look at the text.
/// @param found gets the places of these.
std::vector<PlacedProblem> place(std::vector<reference_host::diagnosis::Problem> problems,
                                 std::string_view text, const std::vector<std::string>& others = {},
                                 std::vector<reference_host::json::ValuePlace>* found = nullptr);

/// Whether a line of the text ends at the place.
bool endsLine(std::string_view text, const reference_host::json::TextPlace& place);

/// Puts problems into the order in which they are told: by line, column, member and code.
void sortByPlace(std::vector<PlacedProblem>& problems);

/// Lets hints show a number as the text writes it, `1.50` as that.
/// @pre the problems are in the order of their places.
void showNumbersAsWritten(std::vector<PlacedProblem>& problems, std::string_view text);

/// Where a text comes from.
struct TextOrigin {
  std::string_view path;      ///< the input, as given
  std::string_view text;      ///< without a byte order mark
  std::size_t firstLine = 1;  ///< where in the input it begins
};

/// Gives the offsets of places in a text, which must come in their order.
class Offsets {
 public:
  explicit Offsets(std::string_view text) noexcept : text_(text) {}

  std::size_t of(const reference_host::json::TextPlace& place);

 private:
  std::string_view text_;
  std::size_t line_ = 1;
  std::size_t column_ = 1;
  std::size_t offset_ = 0;
};

/// Appends two lines: the one around an offset with its number in front, and a caret under what is
/// meant in it. Of a long line no more is looked at than is shown.
/// @param place of what is meant; it begins at the offset.
void appendExcerpt(std::string& out, std::string_view text, std::size_t offset, std::size_t number,
                   const reference_host::json::TextRange& place);

/// Appends problems for people, in the form that editors and CI systems jump to, each with its line
/// and a caret under the value:
///
///     report.json:7:20: error: slider "threshold": "minimum" is text, but a number is wanted
///     [wrong-type]
///         7 |         "minimum": "0",
///           |                    ^~~
///     hint: write it without quotes: 0
///
/// @pre the problems are in the order of their places.
void appendAsText(std::string& out, const std::vector<PlacedProblem>& problems,
                  const TextOrigin& origin);

/// Writes a text, or null.
void writeOptional(reference_host::json::JsonWriter& writer,
                   const std::optional<std::string>& text);

}  // namespace tessel_tool
