#include "controls/control_builders.hpp"

#include "controls/control_build.hpp"
#include "controls/numeric_fields.hpp"
#include "framework/diagnostics.hpp"
#include "framework/recognition.hpp"

namespace tessel::build::json::controls {

namespace {

const ControlKind kSpinner{"Starting to build a SpinnerNode using the incoming JSON below",
                           &document::gxzero::SpinnerNode::Builder::createSpinnerNode,
                           &document::gxzero::SpinnerNode::Impl::createIntoSpinnerData};

}  // namespace

bool SpinnerNodeBuilderImpl::canBuild(const Value& json) const {
  framework::logDiagnostic("Checking if can build SpinnerNode");
  return framework::recognizeByClassName(json, "SpinnerControlNode");
}

Node SpinnerNodeBuilderImpl::build(const Model& model, const Value& json) const {
  return buildControl(kSpinner, model, json,
                      [&json](const auto& data) { applyScalarDefault(data, json); });
}

}  // namespace tessel::build::json::controls
