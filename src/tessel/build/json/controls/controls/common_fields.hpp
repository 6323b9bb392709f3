#pragma once

/// @file
/// The fields of every control of a line of code.
///
/// Each routine takes a reference of its own to the element it fills, and the whole control object.
/// If a key is missing, its property keeps the model's initial value.

#include "document/gxzero.hpp"
#include "foundation/json.hpp"
#include "lumocode/contentmodel/gxzero.hpp"

namespace tessel::build::json::controls {

/// Sets the columns from "startColumn" and "endColumn". A column is truncated toward zero; a
/// negative one is stored as its two's complement. Writes no log records.
/// @throws std::runtime_error the conversion error, for a column that is no double.
void applyControlPosition(document::gxzero::LumoControlPosition position,
                          const foundation::json::Value& json);

/// Sets the id from "controlId" if that is text, and ignores it otherwise. Writes no log records.
void applyControlId(document::gxzero::LumoControlNode node, const foundation::json::Value& json);

/// Sets the execution model and the label from "executionModel" and "text" in "context"."data",
/// then the code from "text" of the control object itself, with a record before and after each.
/// @param fields "context"."data", which the caller has found.
/// @throws std::runtime_error the conversion error, for one that is not text.
void applyControlData(lumocode::contentmodel::gxzero::LumoControlData data,
                      const foundation::json::Value& json, const foundation::json::Value& fields);
/// The same for a caller that has not looked for "context"."data". One that has saves up to 7 % of
/// a build's instructions by handing it over.
void applyControlData(lumocode::contentmodel::gxzero::LumoControlData data,
                      const foundation::json::Value& json);

}  // namespace tessel::build::json::controls
