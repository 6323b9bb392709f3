#pragma once

/// @file
/// The builders of the embedded task widget: its header line, and the node in that line.

#include <memory>
#include <string>
#include <string_view>

#include "document/gxzero.hpp"
#include "foundation/json.hpp"
#include "gx/zero.hpp"
#include "lumocode/contentmodel/gxzero.hpp"
#include "tessel/build/json/builders.hpp"

namespace tessel::build::json::widgets {

using document::gxzero::Node;
using foundation::json::Value;
using gx::zero::Model;

/// Builds a task's header line. Another builder builds its children.
class LumoTaskHeaderBuilderImpl final : public NodeBuilder {
 public:
  /// @param integratedInlineNodeBuilder builds the children; shared until this builder is
  /// destroyed.
  explicit LumoTaskHeaderBuilderImpl(
      const std::shared_ptr<NodeBuilder>& integratedInlineNodeBuilder);

  bool canBuild(const Value& json) const override;
  Node build(const Model& model, const Value& json) const override;

 private:
  std::shared_ptr<NodeBuilder> lumoAppIntegratedInlineNodeBuilder_;
};

/// A property of a task: its JSON key, and the record before it is read.
struct TaskProperty {
  std::string key;
  std::string_view settingText;
};

/// Builds the node of a task in its header line. Holds no state.
class LumoTaskIntegratedInlineNodeBuilderImpl final : public NodeBuilder {
 public:
  bool canBuild(const Value& json) const override;
  Node build(const Model& model, const Value& json) const override;

 private:
  /// The member as UTF-16, empty when it is missing.
  static std::u16string readStringProperty(const Value& json, const TaskProperty& property);
  /// The low 16 bits of the member, which is truncated to 32 bits first; 0 when it is missing.
  static unsigned short readUnsignedShortProperty(const Value& json, const TaskProperty& property);
  static lumocode::contentmodel::gxzero::LumoTaskData buildLumoTaskData(
      const Model& model, lumocode::contentmodel::gxzero::LumoTaskData data, const Value& json);
};

}  // namespace tessel::build::json::widgets
