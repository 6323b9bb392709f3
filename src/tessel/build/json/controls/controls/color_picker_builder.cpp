#include "controls/control_builders.hpp"

#include <string>

#include "controls/control_build.hpp"
#include "controls/picker_fields.hpp"
#include "framework/diagnostics.hpp"
#include "framework/recognition.hpp"

namespace tessel::build::json::controls {

using lumocode::contentmodel::gxzero::ColorPickerData;

namespace {

const std::string kColorFormatKey = "colorFormat";

const ControlKind kColorPicker{"Starting to build a ColorPicker using the incoming JSON below",
                               &document::gxzero::ColorPickerNode::Builder::createColorPickerNode,
                               &document::gxzero::ColorPickerNode::Impl::createIntoColorPickerData};

}  // namespace

bool ColorPickerBuilderImpl::canBuild(const Value& json) const {
  framework::logDiagnostic("Checking if can build ColorPicker");
  return framework::recognizeByClassName(json, "ColorPickerControlNode");
}

Node ColorPickerBuilderImpl::build(const Model& model, const Value& json) const {
  return buildControl(kColorPicker, model, json,
                      [&json](const auto& data) { applyPickerData(data, json); });
}

void ColorPickerBuilderImpl::applyPickerData(ColorPickerData data, const Value& json) {
  applyFormattedFields(data, json, kColorFormatKey, &ColorPickerData::Impl::setColorFormat);
}

}  // namespace tessel::build::json::controls
