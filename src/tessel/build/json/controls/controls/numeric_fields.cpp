#include "controls/numeric_fields.hpp"

#include <string>

#include "controls/common_fields.hpp"
#include "controls/control_fields.hpp"
#include "framework/field.hpp"

namespace tessel::build::json::controls {

namespace {

using foundation::json::Value;
using lumocode::contentmodel::gxzero::NumericControlData;
using lumocode::contentmodel::gxzero::ScalarControlData;
using lumocode::contentmodel::gxzero::StringControlData;

const std::string kExecutionOnKey = "executionOn";
const std::string kMinimumKey = "minimum";
const std::string kMaximumKey = "maximum";
const std::string kStepKey = "step";
const std::string kMinLinkedVariableKey = "minLinkedVariable";
const std::string kMaxLinkedVariableKey = "maxLinkedVariable";
const std::string kStepLinkedVariableKey = "stepLinkedVariable";

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
  applyField(fields, data, kExecutionOnKey, &Impl::setExecuteOn, "Found the executionOn property",
             "Set the executionOn property");
  // The records of the bounds are shorter than their keys.
  applyField(fields, data, kMinimumKey, &Impl::setMin, "Found the min property",
             "Set the min property");
  applyField(fields, data, kMaximumKey, &Impl::setMax, "Found the max property",
             "Set the max property");
  applyField(fields, data, kStepKey, &Impl::setStep, "Found the step property",
             "Set the step property");
  applyDefaultLinkedVariable(fields, data);
  applyField(fields, data, kMinLinkedVariableKey, &Impl::setMinimumLinkedVariable,
             "Found the minLinkedVariable property", "Set the minLinkedVariable property");
  // Meant: this key has no record of its own after the setter; the found-record comes twice.
  applyField(fields, data, kMaxLinkedVariableKey, &Impl::setMaximumLinkedVariable,
             "Found the maxLinkedVariable property", "Found the maxLinkedVariable property");
  applyField(fields, data, kStepLinkedVariableKey, &Impl::setStepLinkedVariable,
             "Found the stepLinkedVariable property", "Set the stepLinkedVariable property");
}

void applyScalarDefault(ScalarControlData data, const Value& json) {
  applyNumericDefault(data, json);
}

void applyRangeDefault(StringControlData data, const Value& json) {
  applyNumericDefault(data, json);
}

}  // namespace tessel::build::json::controls
