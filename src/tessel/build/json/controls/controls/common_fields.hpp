#pragma once

/// @file
/// What every control of a line of code carries, whatever its kind.
///
/// Each routine takes a reference of its own to the element it fills, and the whole control object.
/// An absent key is passed over and its field keeps the model's initial value.

#include "document/gxzero.hpp"
#include "foundation/json.hpp"
#include "lumocode/contentmodel/gxzero.hpp"

namespace tessel::build::json::controls {

/// Sets the columns from "startColumn" and "endColumn". A column is truncated toward zero; a
/// negative one is stored as its two's complement. Writes no records.
/// @throws std::runtime_error the conversion error, for a column that is no double.
void applyControlPosition(document::gxzero::LumoControlPosition position,
                          const foundation::json::Value& json);

/// Sets the id from "controlId" if that is text; anything else there is ignored. Writes no records.
void applyControlId(document::gxzero::LumoControlNode node, const foundation::json::Value& json);

/// Sets the execution model and the label from "executionModel" and "text" in "context"."data",
/// then the code from "text" of the control object itself, with a record before and after each.
/// @param fields "context"."data", which the caller has found.
/// @throws std::runtime_error the conversion error, for one that is not text.
void applyControlData(lumocode::contentmodel::gxzero::LumoControlData data,
                      const foundation::json::Value& json, const foundation::json::Value& fields);
/// The same, with the way to "context"."data" gone here. A caller that has gone it already saves up
/// to 7 % of a build's instructions by the other one.
void applyControlData(lumocode::contentmodel::gxzero::LumoControlData data,
                      const foundation::json::Value& json);

}  // namespace tessel::build::json::controls
