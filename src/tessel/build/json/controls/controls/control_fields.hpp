#pragma once

/// @file
/// The way to a control's own fields, and the fields that several kinds share.

#include <string>

#include "foundation/json.hpp"
#include "framework/field.hpp"

namespace tessel::build::json::controls {

/// The control's own fields, "context"."data", with a record at each step. Null where a step is
/// missing: the record of the control then stays as the model made it.
const foundation::json::Value* findControlFields(const foundation::json::Value& json);

inline const std::string kDefaultValueKey = "defaultValue";
inline const std::string kDefaultLinkedVariableKey = "defaultValueLinkedVariable";

/// Sets the record's default value, of whichever type the record has.
/// @throws std::runtime_error the conversion error, for a default value of another type.
template <typename Record>
void applyDefaultValue(const foundation::json::Value& fields, const Record& record) {
  framework::applyField(fields, record, kDefaultValueKey, &Record::Impl::setDefaultValue,
                        "Found the defaultValue property", "Set the defaultValue property");
}

/// Sets the name of the variable that supplies the default value.
/// @throws std::runtime_error the conversion error, for a name that is not text.
template <typename Record>
void applyDefaultLinkedVariable(const foundation::json::Value& fields, const Record& record) {
  framework::applyField(fields, record, kDefaultLinkedVariableKey,
                        &Record::Impl::setDefaultLinkedVariable,
                        "Found the defaultValueLinkedVariable property",
                        "Set the defaultValueLinkedVariable property");
}

}  // namespace tessel::build::json::controls
