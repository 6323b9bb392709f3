#include "controls/boolean_fields.hpp"

#include "controls/common_fields.hpp"
#include "controls/control_fields.hpp"
#include "framework/field.hpp"

namespace tessel::build::json::controls {

using framework::optional;
using lumocode::contentmodel::gxzero::BooleanControlData;

void applyBooleanControlData(BooleanControlData data, const foundation::json::Value& json) {
  const foundation::json::Value* fields = findControlFields(json);
  if (fields == nullptr) return;
  applyControlData(data, json, *fields);
  optional(*fields, data, kDefaultValue<BooleanControlData>);
  optional(*fields, data, kDefaultLinkedVariable<BooleanControlData>);
}

}  // namespace tessel::build::json::controls
