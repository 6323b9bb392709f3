#pragma once

/// @file
/// The two service interfaces under which builders are published.

#include "document/gxzero.hpp"
#include "foundation/json.hpp"
#include "gx/zero.hpp"

namespace tessel::build::json {

/// Builds a node from a JSON object. Implementations are asked from any thread.
class NodeBuilder {
 public:
  virtual ~NodeBuilder() = default;

  /// Whether `build` is for this value. Never modifies the value.
  virtual bool canBuild(const foundation::json::Value& json) const = 0;

  /// Creates the node in the model and returns it. Called after `canBuild` answered true.
  virtual document::gxzero::Node build(const gx::zero::Model& model,
                                       const foundation::json::Value& json) const = 0;

 protected:
  NodeBuilder() = default;
  NodeBuilder(const NodeBuilder&) = default;
  NodeBuilder& operator=(const NodeBuilder&) = default;
};

}  // namespace tessel::build::json

namespace tessel::build::json::code {

/// Builds an element of a line of code from a JSON object. Implementations are asked from any
/// thread.
class CodeElementBuilder {
 public:
  virtual ~CodeElementBuilder() = default;

  /// Whether `build` is for this value. Never modifies the value.
  virtual bool canBuild(const foundation::json::Value& json) const = 0;

  /// Creates the element's node in the model and returns it. Called after `canBuild` answered
  /// true.
  virtual document::gxzero::Node build(const gx::zero::Model& model,
                                       const foundation::json::Value& json) const = 0;

 protected:
  CodeElementBuilder() = default;
  CodeElementBuilder(const CodeElementBuilder&) = default;
  CodeElementBuilder& operator=(const CodeElementBuilder&) = default;
};

}  // namespace tessel::build::json::code
