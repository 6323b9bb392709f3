#pragma once

/// @file
/// What the controls for a formatted text share.

#include "controls/common_fields.hpp"
#include "controls/control_fields.hpp"
#include "foundation/json.hpp"
#include "framework/field.hpp"

namespace tessel::build::json::controls {

/// Sets the common fields, the format, and the default value. A control without "context"."data"
/// leaves the record untouched; where there is one, the format is required.
/// @throws std::runtime_error the conversion error, for a field of the wrong type; whatever the
///         host throws, or the conversion error, for a missing format. What was set before it stays
///         set.
template <typename Record, typename Setter>
void applyFormattedFields(const Record& data, const foundation::json::Value& json,
                          const framework::Field<Setter>& format) {
  const foundation::json::Value* fields = findControlFields(json);
  if (fields == nullptr) return;
  applyControlData(data, json, *fields);
  framework::required(*fields, data, format);
  framework::optional(*fields, data, kDefaultValue<Record>);
}

}  // namespace tessel::build::json::controls
