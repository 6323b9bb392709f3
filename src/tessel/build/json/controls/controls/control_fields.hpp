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

inline const framework::Field kDefaultValue{"defaultValue", "Found the defaultValue property",
                                            "Set the defaultValue property"};
inline const framework::Field kDefaultLinkedVariable{
    "defaultValueLinkedVariable", "Found the defaultValueLinkedVariable property",
    "Set the defaultValueLinkedVariable property"};

/// Sets the record's default value, of whichever type the record has.
/// @throws std::runtime_error the conversion error, for a default value of another type.
template <typename Record>
void applyDefaultValue(const foundation::json::Value& fields, const Record& record) {
  framework::applyField(fields, record, kDefaultValue, &Record::Impl::setDefaultValue);
}

/// Sets the name of the variable that supplies the default value.
/// @throws std::runtime_error the conversion error, for a name that is not text.
template <typename Record>
void applyDefaultLinkedVariable(const foundation::json::Value& fields, const Record& record) {
  framework::applyField(fields, record, kDefaultLinkedVariable,
                        &Record::Impl::setDefaultLinkedVariable);
}

}  // namespace tessel::build::json::controls
