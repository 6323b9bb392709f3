#pragma once

/// @file
/// The schema of one kind of object.

#include "foundation/json.hpp"
#include "reference_host/diagnosis/knowledge.hpp"
#include "schema.hpp"

namespace tessel_tool {

/// The schema of the objects that are recognised by some words.
foundation::json::Value kindSchemaOf(const reference_host::diagnosis::Knowledge& knowledge,
                                     const reference_host::diagnosis::Recognition& recognition,
                                     Strictness strictness);

}  // namespace tessel_tool
