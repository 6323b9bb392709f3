#include "controls/control_builders.hpp"

#include <string>

#include "controls/control_build.hpp"
#include "controls/picker_fields.hpp"
#include "framework/diagnostics.hpp"
#include "tessel/build/json/core.hpp"

namespace tessel::build::json::controls {

using lumocode::contentmodel::gxzero::DatePickerData;

namespace {

const std::string kDisplayFormatKey = "displayFormat";

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
  applyFormattedFields(data, json, kDisplayFormatKey, &DatePickerData::Impl::setDisplayFormat);
}

}  // namespace tessel::build::json::controls
