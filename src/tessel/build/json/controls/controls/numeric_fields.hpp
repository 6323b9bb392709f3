#pragma once

/// @file
/// What the controls for numbers share.
///
/// Each routine takes a reference of its own to the record it fills, and the whole control object.
/// Numbers are stored as they are: nothing is clamped or compared. All throw the conversion error
/// for a field of the wrong type; what was set before it stays set.

#include "foundation/json.hpp"
#include "lumocode/contentmodel/gxzero.hpp"

namespace tessel::build::json::controls {

/// Sets the common fields, then those of every numeric control.
/// @param fields "context"."data", which the caller has found.
void applyNumericControlData(lumocode::contentmodel::gxzero::NumericControlData data,
                             const foundation::json::Value& json,
                             const foundation::json::Value& fields);

/// All of that, then a default value that is a number. A control without "context"."data" leaves
/// the record untouched.
void applyScalarDefault(lumocode::contentmodel::gxzero::ScalarControlData data,
                        const foundation::json::Value& json);

/// The same with a default value that is text.
void applyRangeDefault(lumocode::contentmodel::gxzero::StringControlData data,
                       const foundation::json::Value& json);

}  // namespace tessel::build::json::controls
