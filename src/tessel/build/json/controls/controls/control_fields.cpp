#include "controls/control_fields.hpp"

#include "framework/diagnostics.hpp"
#include "framework/json_access.hpp"
#include "framework/json_keys.hpp"

namespace tessel::build::json::controls {

const foundation::json::Value* findControlFields(const foundation::json::Value& json) {
  const foundation::json::Value* context =
      foundation::json::find_member(json, framework::kContextKey);
  if (context == nullptr) return nullptr;
  framework::logDiagnostic("Found the context property");
  const foundation::json::Value* fields =
      foundation::json::find_member(*context, framework::kDataKey);
  if (fields != nullptr) framework::logDiagnostic("Found the context.data property");
  return fields;
}

}  // namespace tessel::build::json::controls
