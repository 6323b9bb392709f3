#pragma once

/// @file
/// What an error is about, and where it stands.

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "foundation/json.hpp"
#include "input.hpp"
#include "problem_report.hpp"
#include "reference_host/diagnosis/knowledge.hpp"
#include "reference_host/importer/importer.hpp"
#include "reference_host/json/parse.hpp"
#include "reference_host/json/text_places.hpp"
#include "reference_host/json/text_writer.hpp"

namespace tessel_tool {

/// Where an error is, as the JSON forms tell it.
struct Location {
  std::optional<std::string> member;  ///< none when no value explains the error
  std::optional<std::string> held;
  std::optional<std::string> wanted;
  std::optional<reference_host::json::TextPlace> place;  ///< with the line as counted in the input
};

struct LocatedError {
  Location location;
  std::unique_ptr<PlacedProblem> told;  ///< for people, if they are told
};

enum class Tell { kPrograms, kPeople };

/// The errors of the objects of a document, located in its text, in their order.
/// @param object the object of all errors; null where each has its own, which is given up.
/// @param document the one that was parsed.
/// @param tell whether there is anything for people.
std::vector<LocatedError> locate(const reference_host::diagnosis::Knowledge& knowledge,
                                 std::vector<reference_host::importer::ImportError>& errors,
                                 const foundation::json::Value* object, const Document& document,
                                 Tell tell);

/// The problem of a document that does not parse: the character where parsing stopped;
/// an end of a line is none.
PlacedProblem syntaxProblem(const reference_host::json::ParseError& error,
                            const Document& document);

/// Where the text of a document comes from.
TextOrigin originOf(const Document& document);

/// Writes the members "member", "line", "column", "held" and "wanted", null where nothing is known.
void writeLocation(reference_host::json::JsonWriter& writer, const Location& location);

}  // namespace tessel_tool
