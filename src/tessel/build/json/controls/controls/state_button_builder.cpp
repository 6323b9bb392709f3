#include "controls/control_builders.hpp"

#include "controls/boolean_fields.hpp"
#include "controls/control_build.hpp"
#include "framework/diagnostics.hpp"
#include "framework/recognition.hpp"

namespace tessel::build::json::controls {

namespace {

const ControlKind kStateButton{"Starting to build a StateButton using the incoming JSON below",
                               &document::gxzero::StateButtonNode::Builder::createStateButtonNode,
                               &document::gxzero::StateButtonNode::Impl::createIntoStateButtonData};

}  // namespace

bool StateButtonBuilderImpl::canBuild(const Value& json) const {
  framework::logDiagnostic("Checking if can build StateButton");
  return framework::recognizeByClassName(json, "StateButtonControlNode");
}

Node StateButtonBuilderImpl::build(const Model& model, const Value& json) const {
  return buildControl(kStateButton, model, json,
                      [&json](const auto& data) { applyBooleanControlData(data, json); });
}

}  // namespace tessel::build::json::controls
