#pragma once

/// @file
/// What the builders make of one JSON value.

#include <optional>
#include <string>
#include <vector>

#include "document/gxzero.hpp"
#include "foundation/json.hpp"
#include "gx/zero.hpp"
#include "located_error.hpp"
#include "reference_host/importer/importer.hpp"

namespace tessel_tool {

using Records = std::vector<std::string>;

/// One builder's answer about the value.
struct BuilderAnswer {
  std::string builder;
  std::optional<bool> canBuild;  ///< nothing when it threw
  std::string error;             ///< what it threw
  Location location;             ///< of what it threw, once it is located
  Records log;
};

/// How the build ended.
struct BuildOutcome {
  document::gxzero::Node node;       ///< empty when the build threw
  std::optional<std::string> error;  ///< what it threw
  Location location;                 ///< of what it threw, once it is located
  Records log;
  gx::zero::Model model;  ///< everything the build created, for roots that a failed build left
};

struct Explanation {
  std::vector<BuilderAnswer> answers;    ///< one for each builder, in their order
  std::optional<std::string> claimedBy;  ///< the first builder that said yes
  std::optional<BuildOutcome> build;     ///< there only when a builder claims the value
  std::string told;  ///< for people, once errors are located: the error, or where to look else
};

/// Asks every builder about the value, and has the first that claims it build in a fresh model.
Explanation explain(const std::vector<reference_host::importer::NamedBuilder>& builders,
                    const foundation::json::Value& value);

/// Locates the errors of an explanation, and where nobody can tell anything an object inside.
/// @param value the value that was explained, at the pointer in the document.
void locateErrors(Explanation& explanation, const reference_host::diagnosis::Knowledge& knowledge,
                  const foundation::json::Value& value, const std::string& pointer,
                  const Document& document);

/// Appends the explanation as a JSON object and a line feed.
/// @param oneLine one line without white space, else indented.
void appendAsJson(std::string& out, const Explanation& explanation, bool oneLine);

enum class Answers {
  kNotable,  ///< those of the builders that claim the value or fail; the others are counted
  kAll,
};

/// Appends the explanation as text for people.
/// @param value the value that is explained.
void appendAsText(std::string& out, const Explanation& explanation,
                  const foundation::json::Value& value, Answers answers);

}  // namespace tessel_tool
