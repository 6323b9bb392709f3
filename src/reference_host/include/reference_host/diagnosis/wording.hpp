#pragma once

/// @file
/// The words in which people are told of problems.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/export.hpp"
#include "foundation/json.hpp"
#include "reference_host/diagnosis/knowledge.hpp"
#include "reference_host/diagnosis/path.hpp"
#include "reference_host/importer/importer.hpp"
#include "reference_host/json/text_places.hpp"

namespace reference_host::diagnosis {

/// What an object is for people: the words that say what it is as common ones, and its id, such as
/// `slider "threshold"`.
/// @param builder the one that claims it; null if nobody does.
TESSEL_HOST_API std::string nameOfObject(const Knowledge& knowledge,
                                         const importer::NamedBuilder* builder,
                                         const foundation::json::Value& object);

/// A place in an object: the member's name, or where it is in its array.
std::string nameOfPlace(const Path& place);
/// Where the members of a place lie: `"context"."data"`.
std::string nameOfHolder(const std::string& pattern);

/// A type as what a value is: "text", "a number".
std::string heldWords(const std::string& type);
/// A type as what is wanted.
TESSEL_HOST_API std::string wantedWords(const std::string& type);

/// With what a correction begins that makes a text of a value. The value follows in quotes: a
/// number in its shortest form, however the document writes it.
inline constexpr std::string_view kPutInQuotes = "put it in quotes: ";
/// What to write for a value that holds one type where another is wanted; nothing where the value
/// does not suggest it.
std::optional<std::string> correction(const foundation::json::Value& held,
                                      const std::string& wanted);
/// The same, or else that some value of the wanted type is to be written.
std::string correctionOr(const foundation::json::Value& held, const std::string& wanted);
/// The number that a text is meant as, as JSON has it: "0.05" for "0,05"; nothing where that is not
/// sure.
std::optional<std::string> numberIn(std::string_view text);
/// An example of a type's values as JSON.
std::string exampleOf(const std::string& type);

/// A name in double quotes, as JSON has it.
std::string quoted(std::string_view name);
/// Such names with commas between them; for those beyond the most, dots.
std::string listed(const std::vector<std::string>& names,
                   std::size_t most = static_cast<std::size_t>(-1));
/// `"a", "b" or "c"`.
std::string anyOf(const std::vector<std::string>& names);
/// What may stand in place of the first word: `, or another type: "b", "c"`; empty for one word.
std::string orAnother(const std::string& what, const std::vector<std::string>& words);
/// "line 2, column 7".
/// @param firstLine where in the input the text begins in which the place was counted.
TESSEL_HOST_API std::string lineAndColumn(const json::TextPlace& place, std::size_t firstLine);

/// So many members an example has.
inline constexpr std::size_t kMostNames = 6;

/// With what the class names of controls end.
inline constexpr std::string_view kClassEnding = "ControlNode";
/// The word without that ending if it has it, in small letters.
std::string bareClassName(std::string_view className);

}  // namespace reference_host::diagnosis
