#pragma once

/// @file
/// How every control is built.

#include <boost/uuid/uuid.hpp>
#include <string>
#include <string_view>
#include <utility>

#include "controls/common_fields.hpp"
#include "document/gxzero.hpp"
#include "foundation/json.hpp"
#include "framework/diagnostics.hpp"
#include "framework/element_creation.hpp"
#include "gx/zero.hpp"

namespace tessel::build::json::controls {

/// What differs between the kinds in a build, besides the data routine. Instances are `const` and
/// not `constexpr`: on Windows the address of an imported member is no constant expression.
template <typename Node, typename NodeFactory, typename Data, typename NodeImpl>
struct ControlKind {
  std::string_view startText;
  Node (NodeFactory::*createNode)(const boost::uuids::uuid&);
  Data (NodeImpl::*createIntoData)(typename Data::BuilderWrapper, const boost::uuids::uuid&);
};

template <typename Node, typename NodeFactory, typename Data, typename NodeImpl>
ControlKind(std::string_view, Node (NodeFactory::*)(const boost::uuids::uuid&),
            Data (NodeImpl::*)(typename Data::BuilderWrapper, const boost::uuids::uuid&))
    -> ControlKind<Node, NodeFactory, Data, NodeImpl>;

/// Builds a control: node, position, id, data object, fields, in this order. After a failure,
/// what was created before stays in the model.
/// @param applyData the kind's data routine, which is given the new data object.
/// @throws whatever the model or a routine throws, unchanged.
template <typename Kind, typename ApplyData>
document::gxzero::Node buildControl(const Kind& kind, const gx::zero::Model& model,
                                    const foundation::json::Value& json,
                                    const ApplyData& applyData) {
  using document::gxzero::LumoControlNode;

  framework::logDiagnostic(kind.startText);
  framework::logDiagnostic([&json] { return foundation::json::pretty_print(json); });

  auto node = framework::createInModel(model, kind.createNode);
  const auto position = framework::createInOwner(node, &LumoControlNode::Impl::createIntoPosition);
  applyControlPosition(position, json);
  applyControlId(node, json);
  const auto data = framework::createInOwner(node, kind.createIntoData);
  applyData(data);
  // Moved: a plain return would copy into the base's handle with some compilers.
  return document::gxzero::Node(std::move(node));
}

}  // namespace tessel::build::json::controls
