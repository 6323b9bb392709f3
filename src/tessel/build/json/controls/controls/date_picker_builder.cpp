#include "controls/control_builders.hpp"

#include "controls/control_build.hpp"
#include "controls/picker_fields.hpp"
#include "framework/diagnostics.hpp"
#include "framework/field.hpp"
#include "tessel/build/json/core.hpp"

namespace tessel::build::json::controls {

using lumocode::contentmodel::gxzero::DatePickerData;

namespace {

// Irregular by contract: the record names the colour picker's key.
const framework::Field kDisplayFormat{"displayFormat", framework::kNoRecord,
                                      "Set the colorFormat property",
                                      &DatePickerData::Impl::setDisplayFormat};

const ControlKind kDatePicker{"Starting to build a DatePicker using the incoming JSON below",
                              &document::gxzero::DatePickerNode::Builder::createDatePickerNode,
                              &document::gxzero::DatePickerNode::Impl::createIntoDatePickerData};

}  // namespace

bool DatePickerBuilderImpl::canBuild(const Value& json) const {
  framework::logDiagnostic("Checking if can build DatePicker");
  return core::has_className(json, "DatePickerControlNode");
}

Node DatePickerBuilderImpl::build(const Model& model, const Value& json) const {
  return buildControl(kDatePicker, model, json,
                      [&json](const auto& data) { applyPickerData(data, json); });
}

void DatePickerBuilderImpl::applyPickerData(DatePickerData data, const Value& json) {
  applyFormattedFields(data, json, kDisplayFormat);
}

}  // namespace tessel::build::json::controls
