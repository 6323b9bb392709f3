#pragma once

/// @file
/// The JSON keys that stand in more than one place.

#include <string>

namespace tessel::build::json::controls::framework {

// Looked up by themselves, and made once: the host takes keys as `std::string`.
inline const std::string kContextKey = "context";
inline const std::string kTypeKey = "type";  ///< in "context": the word of a generic control
inline const std::string kDataKey = "data";  ///< in "context": the control's own fields

// What the rows of fields make their keys of.
inline constexpr const char* kDefaultLinkedVariableKey = "defaultValueLinkedVariable";
inline constexpr const char* kDefaultValueKey = "defaultValue";
inline constexpr const char* kExecutionModelKey = "executionModel";
inline constexpr const char* kTextKey = "text";

}  // namespace tessel::build::json::controls::framework
