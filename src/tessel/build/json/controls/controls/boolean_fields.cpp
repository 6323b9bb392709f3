#include "controls/boolean_fields.hpp"

#include "controls/common_fields.hpp"
#include "controls/control_fields.hpp"

namespace tessel::build::json::controls {

void applyBooleanControlData(lumocode::contentmodel::gxzero::BooleanControlData data,
                             const foundation::json::Value& json) {
  const foundation::json::Value* fields = findControlFields(json);
  if (fields == nullptr) return;
  applyControlData(data, json, *fields);
  applyDefaultValue(*fields, data);
  applyDefaultLinkedVariable(*fields, data);
}

}  // namespace tessel::build::json::controls
