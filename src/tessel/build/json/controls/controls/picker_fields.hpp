#pragma once

/// @file
/// What the controls for a formatted text share.

#include <string>

#include "controls/common_fields.hpp"
#include "controls/control_fields.hpp"
#include "foundation/json.hpp"
#include "framework/diagnostics.hpp"
#include "framework/json_access.hpp"

namespace tessel::build::json::controls {

/// Sets the common fields, the format under the key, and the default value. A control without
/// "context"."data" leaves the record untouched; where there is one, the format is required.
/// @throws std::runtime_error the conversion error, for a field of the wrong type; whatever the
///         host throws, or the conversion error, for a missing format. What was set before it stays
///         set.
template <typename Record, typename Impl, typename Result>
void applyFormattedFields(const Record& data, const foundation::json::Value& json,
                          const std::string& formatKey,
                          Result (Impl::*setFormat)(const std::u16string&)) {
  const foundation::json::Value* fields = findControlFields(json);
  if (fields == nullptr) return;
  applyControlData(data, json, *fields);
  foundation::json::Value copy;
  (data.get()->*setFormat)(
      framework::readAs<std::u16string>(framework::requiredMember(*fields, formatKey, copy)));
  // Meant for every format, whatever its key.
  framework::logDiagnostic("Set the colorFormat property");
  applyDefaultValue(*fields, data);
}

}  // namespace tessel::build::json::controls
