#include "widgets/task_builders.hpp"

#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

#include "framework/diagnostics.hpp"
#include "framework/element_creation.hpp"
#include "framework/json_access.hpp"
#include "framework/json_keys.hpp"
#include "framework/recognition.hpp"

namespace tessel::build::json::widgets {

namespace framework = controls::framework;
using document::gxzero::LumoAppIntegratedInlineNode;
using lumocode::contentmodel::gxzero::LumoTaskData;

namespace {

const TaskProperty kInstanceId{"instanceId", "Setting the instanceId property"};
const TaskProperty kTaskId{"taskID", "Setting the taskID property"};
const TaskProperty kAppIdentifier{"appIdentifier", "Setting the appIdentifier property"};
const TaskProperty kView{"view", "Setting the view property"};
const TaskProperty kCollapsed{"collapsed", "Setting the collapsed property"};
const TaskProperty kAppVariables{"appVariables", "Setting the appVariables property"};
const TaskProperty kAppVariablesUserMap{"appVariablesUserMap",
                                        "Setting the appVariablesUserMap property"};
const TaskProperty kExecutionModel{framework::kExecutionModelKey,
                                   "Setting the executionModel property"};
const TaskProperty kAppState{"appState", "Setting the appState property"};
const TaskProperty kAutorun{"autorun", "Setting the autorun property"};
const TaskProperty kText{framework::kTextKey, "Setting the text property"};
const TaskProperty kNumOfCodeLines{"numOfCodeLines", "Setting the numOfCodeLines property"};

/// The platform's conversion of a double to 32 bits, but defined for every value: one that does not
/// fit becomes the smallest integer.
std::int32_t truncateToInt32(double value) noexcept {
  using Limits = std::numeric_limits<std::int32_t>;
  const double whole = std::trunc(value);
  // False for NaN.
  const bool inRange = whole >= Limits::min() && whole <= Limits::max();
  return inRange ? static_cast<std::int32_t>(whole) : Limits::min();
}

}  // namespace

bool LumoTaskIntegratedInlineNodeBuilderImpl::canBuild(const Value& json) const {
  framework::logDiagnostic("Checking if can build LumoAppIntegratedInline");
  return framework::recognizeByClassName(json, "LumoAppIntegratedInlineNode");
}

Node LumoTaskIntegratedInlineNodeBuilderImpl::build(const Model& model, const Value& json) const {
  framework::logDiagnostic("Starting to build a LumoAppIntegratedNode");
  auto node = framework::createInModel(
      model, &LumoAppIntegratedInlineNode::Builder::createLumoAppIntegratedInlineNode);
  node.get()->setId(readStringProperty(json, kInstanceId));
  node.get()->setLumoTaskData(buildLumoTaskData(model, LumoTaskData(), json));
  framework::logDiagnostic("Finished building a LumoAppIntegratedNode");
  return Node(std::move(node));
}

std::u16string LumoTaskIntegratedInlineNodeBuilderImpl::readStringProperty(
    const Value& json, const TaskProperty& property) {
  const Value* member = foundation::json::find_member(json, property.key);
  if (member == nullptr) return {};
  framework::logDiagnostic(property.settingText);
  return framework::readText(*member);
}

unsigned short LumoTaskIntegratedInlineNodeBuilderImpl::readUnsignedShortProperty(
    const Value& json, const TaskProperty& property) {
  const Value* member = foundation::json::find_member(json, property.key);
  if (member == nullptr) return 0;
  framework::logDiagnostic(property.settingText);
  return static_cast<unsigned short>(
      static_cast<std::uint32_t>(truncateToInt32(framework::readDouble(*member))) & 0xFFFFU);
}

LumoTaskData LumoTaskIntegratedInlineNodeBuilderImpl::buildLumoTaskData(const Model&,
                                                                        LumoTaskData data,
                                                                        const Value& json) {
  data.setTaskId(readStringProperty(json, kTaskId));
  data.setAppIdentifier(readStringProperty(json, kAppIdentifier));
  data.setView(readStringProperty(json, kView));
  data.setCollapsed(readStringProperty(json, kCollapsed));
  data.setAppVariables(readStringProperty(json, kAppVariables));
  data.setAppVariablesUserMap(readStringProperty(json, kAppVariablesUserMap));
  data.setExecutionModel(readStringProperty(json, kExecutionModel));
  data.setAppState(readStringProperty(json, kAppState));
  data.setAutoRun(readStringProperty(json, kAutorun));
  data.setText(readStringProperty(json, kText));
  data.setNumCodeLines(readUnsignedShortProperty(json, kNumOfCodeLines));
  return data;
}

}  // namespace tessel::build::json::widgets
