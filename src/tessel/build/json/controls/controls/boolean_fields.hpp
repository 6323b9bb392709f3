#pragma once

/// @file
/// What the controls for a flag share.

#include "foundation/json.hpp"
#include "lumocode/contentmodel/gxzero.hpp"

namespace tessel::build::json::controls {

/// Sets the common fields, then the default value and its linked variable. Takes a reference of
/// its own to the record, and the whole control object; one without "context"."data" leaves the
/// record untouched.
/// @throws std::runtime_error the conversion error, for a field of the wrong type; what was set
///         before it stays set.
void applyBooleanControlData(lumocode::contentmodel::gxzero::BooleanControlData data,
                             const foundation::json::Value& json);

}  // namespace tessel::build::json::controls
