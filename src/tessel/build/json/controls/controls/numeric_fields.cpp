#include "controls/numeric_fields.hpp"

#include <string>

#include "controls/common_fields.hpp"
#include "controls/control_fields.hpp"
#include "framework/field.hpp"

namespace tessel::build::json::controls {

namespace {

using foundation::json::Value;
using framework::Field;
using lumocode::contentmodel::gxzero::NumericControlData;
using lumocode::contentmodel::gxzero::ScalarControlData;
using lumocode::contentmodel::gxzero::StringControlData;

const Field kExecutionOn{"executionOn", "Found the executionOn property",
                         "Set the executionOn property"};
// The records of the bounds are shorter than their keys.
const Field kMinimum{"minimum", "Found the min property", "Set the min property"};
const Field kMaximum{"maximum", "Found the max property", "Set the max property"};
const Field kStep{"step", "Found the step property", "Set the step property"};
const Field kMinLinkedVariable{"minLinkedVariable", "Found the minLinkedVariable property",
                               "Set the minLinkedVariable property"};
// Meant: this key has no record of its own after the setter; the found-record comes twice.
const Field kMaxLinkedVariable{"maxLinkedVariable", "Found the maxLinkedVariable property",
                               "Found the maxLinkedVariable property"};
const Field kStepLinkedVariable{"stepLinkedVariable", "Found the stepLinkedVariable property",
                                "Set the stepLinkedVariable property"};

template <typename Record>
void applyNumericDefault(const Record& data, const Value& json) {
  const Value* fields = findControlFields(json);
  if (fields == nullptr) return;
  applyNumericControlData(data, json, *fields);
  applyDefaultValue(*fields, data);
}

}  // namespace

void applyNumericControlData(NumericControlData data, const Value& json, const Value& fields) {
  using Impl = NumericControlData::Impl;
  using framework::applyField;

  applyControlData(data, json, fields);
  applyField(fields, data, kExecutionOn, &Impl::setExecuteOn);
  applyField(fields, data, kMinimum, &Impl::setMin);
  applyField(fields, data, kMaximum, &Impl::setMax);
  applyField(fields, data, kStep, &Impl::setStep);
  applyDefaultLinkedVariable(fields, data);
  applyField(fields, data, kMinLinkedVariable, &Impl::setMinimumLinkedVariable);
  applyField(fields, data, kMaxLinkedVariable, &Impl::setMaximumLinkedVariable);
  applyField(fields, data, kStepLinkedVariable, &Impl::setStepLinkedVariable);
}

void applyScalarDefault(ScalarControlData data, const Value& json) {
  applyNumericDefault(data, json);
}

void applyRangeDefault(StringControlData data, const Value& json) {
  applyNumericDefault(data, json);
}

}  // namespace tessel::build::json::controls
