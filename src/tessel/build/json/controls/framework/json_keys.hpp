#pragma once

/// @file
/// The JSON keys that are used in more than one place.

#include <string>

namespace tessel::build::json::controls::framework {

// Looked up directly. They are made once because the host takes keys as `std::string`.
inline const std::string kContextKey = "context";
inline const std::string kTypeKey = "type";  ///< in "context": the word of a generic control
inline const std::string kDataKey = "data";  ///< in "context": the control's own fields

// The keys of fields.
inline constexpr const char* kDefaultLinkedVariableKey = "defaultValueLinkedVariable";
inline constexpr const char* kDefaultValueKey = "defaultValue";
inline constexpr const char* kExecutionModelKey = "executionModel";
inline constexpr const char* kTextKey = "text";

}  // namespace tessel::build::json::controls::framework
