#include "controls/control_builders.hpp"

#include "controls/control_build.hpp"
#include "controls/numeric_fields.hpp"
#include "framework/diagnostics.hpp"
#include "framework/recognition.hpp"

namespace tessel::build::json::controls {

namespace {

const ControlKind kRangeSlider{"Starting to build a RangeSliderNode using the incoming JSON below",
                               &document::gxzero::RangeSliderNode::Builder::createRangeSliderNode,
                               &document::gxzero::RangeSliderNode::Impl::createIntoRangeSliderData};

}  // namespace

bool RangeSliderNodeBuilderImpl::canBuild(const Value& json) const {
  framework::logDiagnostic("Checking if can build RangeSliderNode");
  return framework::recognizeByClassName(json, "RangeSliderControlNode");
}

Node RangeSliderNodeBuilderImpl::build(const Model& model, const Value& json) const {
  return buildControl(kRangeSlider, model, json,
                      [&json](const auto& data) { applyRangeDefault(data, json); });
}

}  // namespace tessel::build::json::controls
