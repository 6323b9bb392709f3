#pragma once

/// @file
/// A builder that nobody has told of, with ways of its own: it copies what it reads, goes over
/// arrays and members itself, and says in its own words what it does not like.

#include <boost/uuid/uuid.hpp>
#include <stdexcept>
#include <string>
#include <utility>

#include "document/gxzero.hpp"
#include "fl/i18n.hpp"
#include "foundation/json.hpp"
#include "gx/zero.hpp"
#include "tessel/build/json/builders.hpp"

namespace test_support {

/// Builds
///
///     {"className": "DialNode", "controlId": "id",
///      "range": {"from": 1, "to": 2},           required
///      "marks": [{"at": 1}, {"at": 2}],
///      "names": ["a", "b"],
///      "options": {"any": "text"}}              all members are texts
class DialBuilder final : public tessel::build::json::NodeBuilder {
 public:
  using Value = foundation::json::Value;
  using Node = document::gxzero::Node;

  bool canBuild(const Value& json) const override {
    if (!json.hasOwnProperty("className")) return false;
    const Value className = json["className"];
    const auto* text = className.get_if<std::string>();
    return text != nullptr && *text == "DialNode";
  }

  Node build(const gx::zero::Model& model, const Value& json) const override {
    Value::Array seen;
    const Value range = require<Value::Object>(json, "range");
    seen.emplace_back(require<double>(range, "from"));
    seen.emplace_back(require<double>(range, "to"));
    if (json.hasOwnProperty("marks")) {
      const Value marks = require<Value::Array>(json, "marks");
      for (const Value& mark : *marks.get_if<Value::Array>()) {
        seen.emplace_back(require<double>(mark, "at"));
      }
    }
    if (json.hasOwnProperty("names")) {
      for (const Value& name : *require<Value::Array>(json, "names").get_if<Value::Array>()) {
        seen.push_back(textOf(name));
      }
    }
    if (json.hasOwnProperty("options")) {
      for (const auto& [name, option] :
           *require<Value::Object>(json, "options").get_if<Value::Object>()) {
        seen.push_back(name + textOf(option));
      }
    }
    using document::gxzero::LumoAppLineNode;
    auto line = LumoAppLineNode::Builder(model).createLumoAppLineNode(boost::uuids::uuid{});
    line.get()->setAnchorId(fl::i18n::utf8_to_ustring(foundation::json::pretty_print(seen)));
    return Node(std::move(line));
  }

 private:
  template <typename Wanted>
  static const Value& require(const Value& holder, const char* key) {
    const Value& member = holder[key];
    if (member.get_if<Wanted>() == nullptr) throw std::runtime_error("this is no dial");
    return member;
  }
  static std::string textOf(const Value& value) {
    const auto* text = value.get_if<std::string>();
    if (text == nullptr) throw std::runtime_error("this is no text");
    return *text;
  }
};

}  // namespace test_support
