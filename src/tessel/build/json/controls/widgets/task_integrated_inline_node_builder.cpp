#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

#include "fl/i18n.hpp"
#include "framework/diagnostics.hpp"
#include "framework/element_creation.hpp"
#include "framework/json_access.hpp"
#include "framework/recognition.hpp"
#include "widgets/task_builders.hpp"

namespace tessel::build::json::widgets {

namespace framework = controls::framework;
using document::gxzero::LumoAppIntegratedInlineNode;
using lumocode::contentmodel::gxzero::LumoTaskData;

namespace {

const std::string kInstanceIdKey = "instanceId";
const std::string kTaskIdKey = "taskID";
const std::string kAppIdentifierKey = "appIdentifier";
const std::string kViewKey = "view";
const std::string kCollapsedKey = "collapsed";
const std::string kAppVariablesKey = "appVariables";
const std::string kAppVariablesUserMapKey = "appVariablesUserMap";
const std::string kExecutionModelKey = "executionModel";
const std::string kAppStateKey = "appState";
const std::string kAutorunKey = "autorun";
const std::string kTextKey = "text";
const std::string kNumOfCodeLinesKey = "numOfCodeLines";

/// "Setting the taskID property", and likewise for every key. Comes before the member is read.
void logSetting(const std::string& key) {
  framework::logDiagnostic([&key] { return "Setting the " + key + " property"; });
}

/// The platform's conversion of a double to 32 bits, defined for every value: what they do not
/// hold becomes the least of them.
std::int32_t truncateToInt32(double value) noexcept {
  using Limits = std::numeric_limits<std::int32_t>;
  const double whole = std::trunc(value);
  // Written so that NaN is out of range too.
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
  node.get()->setId(readStringProperty(json, kInstanceIdKey));
  node.get()->setLumoTaskData(buildLumoTaskData(model, LumoTaskData(), json));
  framework::logDiagnostic("Finished building a LumoAppIntegratedNode");
  return Node(std::move(node));
}

std::u16string LumoTaskIntegratedInlineNodeBuilderImpl::readStringProperty(const Value& json,
                                                                           const std::string& key) {
  const Value* member = foundation::json::find_member(json, key);
  if (member == nullptr) return {};
  logSetting(key);
  return framework::readAs<std::u16string>(*member);
}

unsigned short LumoTaskIntegratedInlineNodeBuilderImpl::readUnsignedShortProperty(
    const Value& json, const std::string& key) {
  const Value* member = foundation::json::find_member(json, key);
  if (member == nullptr) return 0;
  logSetting(key);
  return static_cast<unsigned short>(
      static_cast<std::uint32_t>(truncateToInt32(framework::readDouble(*member))) & 0xFFFFU);
}

LumoTaskData LumoTaskIntegratedInlineNodeBuilderImpl::buildLumoTaskData(const Model&,
                                                                        LumoTaskData data,
                                                                        const Value& json) {
  data.setTaskId(readStringProperty(json, kTaskIdKey));
  data.setAppIdentifier(readStringProperty(json, kAppIdentifierKey));
  data.setView(readStringProperty(json, kViewKey));
  data.setCollapsed(readStringProperty(json, kCollapsedKey));
  data.setAppVariables(readStringProperty(json, kAppVariablesKey));
  data.setAppVariablesUserMap(readStringProperty(json, kAppVariablesUserMapKey));
  data.setExecutionModel(readStringProperty(json, kExecutionModelKey));
  data.setAppState(readStringProperty(json, kAppStateKey));
  data.setAutoRun(readStringProperty(json, kAutorunKey));
  data.setText(readStringProperty(json, kTextKey));
  data.setNumCodeLines(readUnsignedShortProperty(json, kNumOfCodeLinesKey));
  return data;
}

}  // namespace tessel::build::json::widgets
