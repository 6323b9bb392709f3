#include "controls/control_builders.hpp"

#include "controls/control_build.hpp"
#include "controls/picker_fields.hpp"
#include "framework/diagnostics.hpp"
#include "framework/field.hpp"
#include "framework/recognition.hpp"

namespace tessel::build::json::controls {

using lumocode::contentmodel::gxzero::ColorPickerData;

namespace {

const framework::Field kColorFormat{"colorFormat", framework::kNoRecord,
                                    "Set the colorFormat property",
                                    &ColorPickerData::Impl::setColorFormat};

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
  applyFormattedFields(data, json, kColorFormat);
}

}  // namespace tessel::build::json::controls
