#pragma once

/// @file
/// The fields of controls for a formatted text.

#include "controls/common_fields.hpp"
#include "controls/control_fields.hpp"
#include "foundation/json.hpp"
#include "framework/field.hpp"

namespace tessel::build::json::controls {

/// Sets the common fields, the format, which is required, and the default value. Changes nothing if
/// the control has no "context"."data".
/// @throws std::runtime_error the conversion error, for a field of the wrong type; what was set
///         before it stays set. For a missing format whatever the host throws, or that error.
template <typename Data, typename Setter>
void applyFormattedFields(const Data& data, const foundation::json::Value& json,
                          const framework::Field<Setter>& format) {
  const foundation::json::Value* fields = findControlFields(json);
  if (fields == nullptr) return;
  applyControlData(data, json, *fields);
  framework::required(*fields, data, format);
  framework::optional(*fields, data, kDefaultValue<Data>);
}

}  // namespace tessel::build::json::controls
