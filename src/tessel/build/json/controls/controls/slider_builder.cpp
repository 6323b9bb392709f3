#include "controls/control_builders.hpp"

#include "controls/control_build.hpp"
#include "controls/numeric_fields.hpp"
#include "framework/diagnostics.hpp"
#include "framework/recognition.hpp"

namespace tessel::build::json::controls {

namespace {

const ControlKind kSlider{"Starting to build a SliderNode using the incoming JSON below",
                          &document::gxzero::SliderNode::Builder::createSliderNode,
                          &document::gxzero::SliderNode::Impl::createIntoSliderData};

}  // namespace

bool SliderNodeBuilderImpl::canBuild(const Value& json) const {
  framework::logDiagnostic("Checking if can build SliderNode");
  return framework::recognizeByTypeWord(json, "slider");
}

Node SliderNodeBuilderImpl::build(const Model& model, const Value& json) const {
  return buildControl(kSlider, model, json,
                      [&json](const auto& data) { applyScalarDefault(data, json); });
}

}  // namespace tessel::build::json::controls
