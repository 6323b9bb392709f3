#include "controls/numeric_fields.hpp"

#include "controls/common_fields.hpp"
#include "controls/control_fields.hpp"
#include "framework/field.hpp"

namespace tessel::build::json::controls {

namespace {

using foundation::json::Value;
using framework::Field;
using framework::optional;
using lumocode::contentmodel::gxzero::NumericControlData;
using lumocode::contentmodel::gxzero::ScalarControlData;
using lumocode::contentmodel::gxzero::StringControlData;

const Field kExecutionOn{"executionOn", "Found the executionOn property",
                         "Set the executionOn property", &NumericControlData::Impl::setExecuteOn};
// Irregular by contract: the records of the bounds do not use the whole key.
const Field kMinimum{"minimum", "Found the min property", "Set the min property",
                     &NumericControlData::Impl::setMin};
const Field kMaximum{"maximum", "Found the max property", "Set the max property",
                     &NumericControlData::Impl::setMax};
const Field kStep{"step", "Found the step property", "Set the step property",
                  &NumericControlData::Impl::setStep};
const Field kMinLinkedVariable{"minLinkedVariable", "Found the minLinkedVariable property",
                               "Set the minLinkedVariable property",
                               &NumericControlData::Impl::setMinimumLinkedVariable};
// Irregular by contract: the found-record is written a second time, in place of a set-record.
const Field kMaxLinkedVariable{"maxLinkedVariable", "Found the maxLinkedVariable property",
                               "Found the maxLinkedVariable property",
                               &NumericControlData::Impl::setMaximumLinkedVariable};
const Field kStepLinkedVariable{"stepLinkedVariable", "Found the stepLinkedVariable property",
                                "Set the stepLinkedVariable property",
                                &NumericControlData::Impl::setStepLinkedVariable};

template <typename Data>
void applyNumericDefault(const Data& data, const Value& json) {
  const Value* fields = findControlFields(json);
  if (fields == nullptr) return;
  applyNumericControlData(data, json, *fields);
  optional(*fields, data, kDefaultValue<Data>);
}

}  // namespace

void applyNumericControlData(NumericControlData data, const Value& json, const Value& fields) {
  applyControlData(data, json, fields);
  optional(fields, data, kExecutionOn);
  optional(fields, data, kMinimum);
  optional(fields, data, kMaximum);
  optional(fields, data, kStep);
  optional(fields, data, kDefaultLinkedVariable<NumericControlData>);
  optional(fields, data, kMinLinkedVariable);
  optional(fields, data, kMaxLinkedVariable);
  optional(fields, data, kStepLinkedVariable);
}

void applyScalarDefault(ScalarControlData data, const Value& json) {
  applyNumericDefault(data, json);
}

void applyRangeDefault(StringControlData data, const Value& json) {
  applyNumericDefault(data, json);
}

}  // namespace tessel::build::json::controls
