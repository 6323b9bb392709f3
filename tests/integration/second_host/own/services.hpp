#pragma once

/// @file
/// What the second host offers builders, and what it asks of them.

#include <string>

#include "framework.hpp"
#include "own/classes.hpp"
#include "text.hpp"
#include "values.hpp"

namespace tessel::build::json {

struct NodeBuilder {
  virtual ~NodeBuilder() = default;
  virtual bool canBuild(const foundation::json::Value& json) const = 0;
  virtual document::gxzero::Node build(const gx::zero::Model& model,
                                       const foundation::json::Value& json) const = 0;
};

}  // namespace tessel::build::json

namespace tessel::build::json::code {

using CodeElementBuilder = NodeBuilder;

}  // namespace tessel::build::json::code

namespace tessel::build::json::core {

inline bool has_className(const foundation::json::Value& json, std::string className) {
  const auto member = json["className"];
  const auto* held = member.held<std::string>();
  return held != nullptr && *held == className;
}

inline std::u16string extract_anchor_id(const foundation::json::Value& json,
                                        const std::string& prefix) {
  const auto member = json["anchor"];
  const auto* held = member.held<std::string>();
  return fl::i18n::utf8_to_ustring(prefix + (held != nullptr ? *held : ""));
}

}  // namespace tessel::build::json::core
