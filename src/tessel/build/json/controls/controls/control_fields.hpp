#pragma once

/// @file
/// Finds a control's own fields, and describes those that several kinds share.

#include "foundation/json.hpp"
#include "framework/field.hpp"
#include "framework/json_keys.hpp"

namespace tessel::build::json::controls {

/// The control's own fields, "context"."data". Writes a log record for each of the two that it
/// finds.
/// @return null if one is missing; the control's data object then keeps its initial values.
const foundation::json::Value* findControlFields(const foundation::json::Value& json);

/// The default value, of the type that the data object gives it.
template <typename Data>
inline const framework::Field kDefaultValue{
    framework::kDefaultValueKey, "Found the defaultValue property", "Set the defaultValue property",
    &Data::Impl::setDefaultValue};

/// The name of the variable that supplies the default value.
template <typename Data>
inline const framework::Field kDefaultLinkedVariable{
    framework::kDefaultLinkedVariableKey, "Found the defaultValueLinkedVariable property",
    "Set the defaultValueLinkedVariable property", &Data::Impl::setDefaultLinkedVariable};

}  // namespace tessel::build::json::controls
