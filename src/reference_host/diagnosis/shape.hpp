#pragma once

#include <string>

#include "foundation/json.hpp"

namespace reference_host::diagnosis {

/// The names and types of all that is in a value, and the words that decide what it is: builders
/// treat values alike that have the same shape. Elements like the one before them do not count.
/// @pre the value is nested no deeper than a parsed one.
std::string shapeOf(const foundation::json::Value& value);

}  // namespace reference_host::diagnosis
