// A bundle with a builder that does as its object says, one that has nothing to do, and one whose
// reference nobody satisfies.

#include <boost/uuid/nil_generator.hpp>
#include <memory>
#include <stdexcept>

#include "document/gxzero.hpp"
#include "registration.hpp"
#include "tessel/build/json/builders.hpp"

namespace tool_test {

using document::gxzero::ButtonNode;
using document::gxzero::Node;
using foundation::json::Value;
using gx::zero::Model;
using tessel::build::json::NodeBuilder;
using tessel::build::json::code::CodeElementBuilder;

class ObedientBuilder final : public CodeElementBuilder {
 public:
  bool canBuild(const Value& json) const override {
    const Value command = json["say"];
    if (command == Value("throw a number")) throw 7;
    return json.hasOwnProperty("say") && command != Value("no");
  }

  Node build(const Model& model, const Value& json) const override {
    const Value command = json["say"];
    if (command == Value("build nothing")) return Node();
    ButtonNode node = ButtonNode::Builder(model).createButtonNode(boost::uuids::nil_uuid());
    if (command == Value("fail with a number")) throw 7;
    return node;
  }
};

class IdleBuilder final : public NodeBuilder {
 public:
  bool canBuild(const Value&) const override { return false; }
  Node build(const Model&, const Value&) const override { return Node(); }
};

class WaitingBuilder final : public NodeBuilder {
 public:
  explicit WaitingBuilder(const std::shared_ptr<NodeBuilder>& somebody) : somebody_(somebody) {}

  bool canBuild(const Value& json) const override { return somebody_->canBuild(json); }
  Node build(const Model& model, const Value& json) const override {
    return somebody_->build(model, json);
  }

 private:
  std::shared_ptr<NodeBuilder> somebody_;
};

}  // namespace tool_test

#include "entry_points.inc"
