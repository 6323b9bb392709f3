#pragma once

/// @file
/// A JSON Schema of documents.

#include <string>

#include "foundation/json.hpp"
#include "reference_host/diagnosis/knowledge.hpp"

namespace tessel_tool {

/// What a schema refuses besides what an import tells an error of.
enum class Strictness {
  kAsImport,  ///< nothing
  /// of a control, types that no builder knows and members that none reads; and what no builder
  /// claims but looks like a control
  kStrict,
};

/// A schema (draft 2020-12) that accepts a document when an import builds all of it without an
/// error. It is learnt from the builders.
/// @param bundle the name of the bundle that they are from.
foundation::json::Value schemaOf(const reference_host::diagnosis::Knowledge& knowledge,
                                 const std::string& bundle, Strictness strictness);

}  // namespace tessel_tool
