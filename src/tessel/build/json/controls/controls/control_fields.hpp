#pragma once

/// @file
/// The way to a control's own fields, and the fields that several kinds share.

#include "foundation/json.hpp"
#include "framework/field.hpp"
#include "framework/json_keys.hpp"

namespace tessel::build::json::controls {

/// The control's own fields, "context"."data", with a record at each step. Null where a step is
/// missing: the record of the control then stays as the model made it.
const foundation::json::Value* findControlFields(const foundation::json::Value& json);

/// The default value of a record, of whichever type the record has.
template <typename Record>
inline const framework::Field kDefaultValue{
    framework::kDefaultValueKey, "Found the defaultValue property", "Set the defaultValue property",
    &Record::Impl::setDefaultValue};

/// The name of the variable that supplies the default value.
template <typename Record>
inline const framework::Field kDefaultLinkedVariable{
    framework::kDefaultLinkedVariableKey, "Found the defaultValueLinkedVariable property",
    "Set the defaultValueLinkedVariable property", &Record::Impl::setDefaultLinkedVariable};

}  // namespace tessel::build::json::controls
