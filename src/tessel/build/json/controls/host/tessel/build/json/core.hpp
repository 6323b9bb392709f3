#pragma once

/// @file
/// The JSON build core library: what every builder module may ask about a node's JSON object.

#include <string>

#include "foundation/export.hpp"
#include "foundation/json.hpp"

namespace tessel::build::json::core {

/// True when the value is an object whose "className" is the given text; false for everything
/// else, also for a "className" that is not text.
TESSEL_HOST_API bool has_className(const foundation::json::Value& json, std::string className);

/// The anchor id of a node: its "anchorId" if that is text, with the prefix put in front unless it
/// is there already; empty when there is no such text.
TESSEL_HOST_API std::u16string extract_anchor_id(const foundation::json::Value& json,
                                                 const std::string& prefix);

}  // namespace tessel::build::json::core
