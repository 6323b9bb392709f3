#include "controls/control_fields.hpp"

#include "framework/diagnostics.hpp"
#include "framework/json_keys.hpp"

namespace tessel::build::json::controls {

const foundation::json::Value* findControlFields(const foundation::json::Value& json) {
  if (!json.hasOwnProperty(framework::kContextKey)) return nullptr;
  framework::logDiagnostic("Found the context property");
  const foundation::json::Value& context = json[framework::kContextKey];
  if (!context.hasOwnProperty(framework::kDataKey)) return nullptr;
  framework::logDiagnostic("Found the context.data property");
  return &context[framework::kDataKey];
}

}  // namespace tessel::build::json::controls
