#include "widgets/task_builders.hpp"

#include <utility>

#include "framework/diagnostics.hpp"
#include "framework/element_creation.hpp"
#include "framework/element_sequence.hpp"
#include "framework/json_access.hpp"
#include "tessel/build/json/core.hpp"

namespace tessel::build::json::widgets {

namespace framework = controls::framework;
using document::gxzero::LumoAppLineNode;

namespace {

const std::string kAnchorPrefix = "M_";
const std::string kChildrenKey = "children";

}  // namespace

LumoTaskHeaderBuilderImpl::LumoTaskHeaderBuilderImpl(
    const std::shared_ptr<NodeBuilder>& integratedInlineNodeBuilder)
    : lumoAppIntegratedInlineNodeBuilder_(integratedInlineNodeBuilder) {}

bool LumoTaskHeaderBuilderImpl::canBuild(const Value& json) const {
  framework::logDiagnostic("Checking if can build LumoAppLineNode");
  return core::has_className(json, "LumoAppLineNode");
}

Node LumoTaskHeaderBuilderImpl::build(const Model& model, const Value& json) const {
  framework::logDiagnostic("Starting to build a LumoAppLineNode");
  auto line = framework::createInModel(model, &LumoAppLineNode::Builder::createLumoAppLineNode);
  framework::logDiagnostic("Building the anchorId for the LumoAppLineNode");
  line.get()->setAnchorId(core::extract_anchor_id(json, kAnchorPrefix));
  auto& children = line.get()->getChildrenMutable();
  const Value& entries = json[kChildrenKey];
  for (const Value& child : framework::readArray(entries)) {
    if (!lumoAppIntegratedInlineNodeBuilder_->canBuild(child)) continue;
    framework::append(children, lumoAppIntegratedInlineNodeBuilder_->build(model, child));
  }
  framework::logDiagnostic("Finished building the LumoAppLineNode");
  return Node(std::move(line));
}

}  // namespace tessel::build::json::widgets
