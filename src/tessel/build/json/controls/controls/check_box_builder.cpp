#include "controls/control_builders.hpp"

#include "controls/boolean_fields.hpp"
#include "controls/control_build.hpp"
#include "framework/diagnostics.hpp"
#include "framework/recognition.hpp"

namespace tessel::build::json::controls {

namespace {

const ControlKind kCheckBox{"Starting to build a CheckBox using the incoming JSON below",
                            &document::gxzero::CheckBoxNode::Builder::createCheckBoxNode,
                            &document::gxzero::CheckBoxNode::Impl::createIntoCheckBoxData};

}  // namespace

bool CheckBoxBuilderImpl::canBuild(const Value& json) const {
  framework::logDiagnostic("Checking if can build CheckBox");
  return framework::recognizeByTypeWord(json, "checkBox");
}

Node CheckBoxBuilderImpl::build(const Model& model, const Value& json) const {
  return buildControl(kCheckBox, model, json,
                      [&json](const auto& data) { applyBooleanControlData(data, json); });
}

}  // namespace tessel::build::json::controls
