#include "controls/control_builders.hpp"

#include "controls/common_fields.hpp"
#include "controls/control_build.hpp"
#include "framework/diagnostics.hpp"
#include "framework/recognition.hpp"

namespace tessel::build::json::controls {

namespace {

const ControlKind kButton{"Starting to build a Button using the incoming JSON below",
                          &document::gxzero::ButtonNode::Builder::createButtonNode,
                          &document::gxzero::ButtonNode::Impl::createIntoButtonData};

}  // namespace

bool ButtonBuilderImpl::canBuild(const Value& json) const {
  framework::logDiagnostic("Checking if can build Button");
  return framework::recognizeByTypeWordOrClassName(json, "button");
}

Node ButtonBuilderImpl::build(const Model& model, const Value& json) const {
  return buildControl(kButton, model, json,
                      [&json](const auto& data) { applyControlData(data, json); });
}

}  // namespace tessel::build::json::controls
