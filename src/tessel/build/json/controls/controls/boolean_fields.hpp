#pragma once

/// @file
/// The fields of controls for a flag.

#include "foundation/json.hpp"
#include "lumocode/contentmodel/gxzero.hpp"

namespace tessel::build::json::controls {

/// Sets the common fields, then the default value and its linked variable. Changes nothing if the
/// control has no "context"."data".
/// @param json the whole control object.
/// @throws std::runtime_error the conversion error, for a field of the wrong type; what was set
///         before it stays set.
void applyBooleanControlData(lumocode::contentmodel::gxzero::BooleanControlData data,
                             const foundation::json::Value& json);

}  // namespace tessel::build::json::controls
