#pragma once

/// @file
/// Asking a builder once more, and looking on.

#include <optional>
#include <string>

#include "foundation/json.hpp"
#include "reference_host/diagnosis/read_trace.hpp"
#include "reference_host/importer/importer.hpp"

namespace reference_host::diagnosis {

/// How one call of a builder went.
struct Attempt {
  bool succeeded;       ///< it did not throw; a build returned a node
  bool claimed;         ///< `canBuild` said yes
  std::string message;  ///< of a failure
  ReadTrace trace;
};

/// Has a builder say whether it can build the object, or build it in a model that is thrown away.
/// @throws std::bad_alloc when memory runs out; what else a builder throws is a failure.
Attempt attempt(const importer::NamedBuilder& builder, importer::Step step,
                const foundation::json::Value& object);

/// Whether a builder claims the object; not where it cannot tell.
bool isClaimed(const importer::NamedBuilder& builder, const foundation::json::Value& object);

/// The node that a builder makes of the object, as JSON; nothing when it fails.
std::optional<std::string> nodeBuilt(const importer::NamedBuilder& builder,
                                     const foundation::json::Value& object);

}  // namespace reference_host::diagnosis
