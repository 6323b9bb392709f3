#pragma once

/// @file
/// The JSON keys that more than one builder reads, made once: the host takes keys as `std::string`.

#include <string>

namespace tessel::build::json::controls::framework {

inline const std::string kContextKey = "context";
inline const std::string kTypeKey = "type";  ///< in "context": the word of a generic control
inline const std::string kDataKey = "data";  ///< in "context": the control's own fields

}  // namespace tessel::build::json::controls::framework
