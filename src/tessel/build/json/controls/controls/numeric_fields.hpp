#pragma once

/// @file
/// The fields of controls for numbers.
///
/// Each routine takes the whole control object. Numbers are stored as they are, neither clamped nor
/// compared. All routines throw the conversion error for a field of the wrong type; what was set
/// before it stays set.

#include "foundation/json.hpp"
#include "lumocode/contentmodel/gxzero.hpp"

namespace tessel::build::json::controls {

/// Sets the common fields, then those of every numeric control.
/// @param fields "context"."data", which the caller has found.
void applyNumericControlData(lumocode::contentmodel::gxzero::NumericControlData data,
                             const foundation::json::Value& json,
                             const foundation::json::Value& fields);

/// The same, then a default value that is a number. Changes nothing if the control has no
/// "context"."data".
void applyScalarDefault(lumocode::contentmodel::gxzero::ScalarControlData data,
                        const foundation::json::Value& json);

/// `applyScalarDefault` for a default value that is text.
void applyRangeDefault(lumocode::contentmodel::gxzero::StringControlData data,
                       const foundation::json::Value& json);

}  // namespace tessel::build::json::controls
