#pragma once

/// @file
/// A node builder that does what its input says, and tells what it was asked.

#include <boost/uuid/uuid.hpp>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "document/gxzero.hpp"
#include "fl/i18n.hpp"
#include "foundation/json.hpp"
#include "gx/zero.hpp"
#include "tessel/build/json/builders.hpp"

namespace test_support {

/// Takes texts, each an instruction:
///
///     no              declined
///     throw TEXT      asking throws TEXT
///     throw a number  asking throws 42
///     node ANCHOR     a new line node with the anchor id
///     half ANCHOR     the same, but then the build throws the instruction
///     empty           an empty handle
///     first           the first node that it made, in a model that is still there
///     foreign         a node of another model
///     line            the model's first root
///
/// What is no text is declined. Of what it returns it keeps no handle.
class ScriptedNodeBuilder final : public tessel::build::json::NodeBuilder {
 public:
  using Node = document::gxzero::Node;

  bool canBuild(const foundation::json::Value& json) const override {
    const auto* const instruction = json.get_if<std::string>();
    calls_.push_back("canBuild " +
                     (instruction ? *instruction : foundation::json::pretty_print(json)));
    if (instruction == nullptr || *instruction == "no") return false;
    if (*instruction == "throw a number") throw 42;  // NOLINT: no exception on purpose
    if (startsWith(*instruction, "throw ")) throw std::runtime_error(instruction->substr(6));
    return true;
  }

  Node build(const gx::zero::Model& model, const foundation::json::Value& json) const override {
    const std::string& instruction = *json.get_if<std::string>();
    calls_.push_back("build " + instruction);
    lastModel_ = model.get();
    if (instruction == "empty") return {};
    if (instruction == "first") return Node(first_);
    if (instruction == "foreign") return createLine(foreign_, "");
    if (instruction == "line") {
      return Node(dynamic_cast<Node::Impl*>(model.get()->getElements().front().get()));
    }
    Node node = createLine(model, instruction.substr(5));
    if (startsWith(instruction, "half ")) throw std::runtime_error(instruction);
    if (first_ == nullptr) first_ = node.get();
    return node;
  }

  /// Takes the calls so far: the operation, and its input.
  std::vector<std::string> takeCalls() { return std::exchange(calls_, {}); }
  /// The model of the last build.
  const gx::zero::Model::Impl* lastModel() const { return lastModel_; }
  std::size_t heldForeignElements() const { return foreign_.get()->getHeldElementCount(); }

 private:
  static bool startsWith(const std::string& text, const std::string& start) {
    return text.compare(0, start.size(), start) == 0;
  }

  static Node createLine(const gx::zero::Model& model, const std::string& anchor) {
    using document::gxzero::LumoAppLineNode;
    auto line = LumoAppLineNode::Builder(model).createLumoAppLineNode(boost::uuids::uuid{});
    line.get()->setAnchorId(fl::i18n::utf8_to_ustring(anchor));
    return Node(std::move(line));
  }

  mutable std::vector<std::string> calls_;
  mutable Node::Impl* first_ = nullptr;
  mutable const gx::zero::Model::Impl* lastModel_ = nullptr;
  gx::zero::Model foreign_ = gx::zero::Model::create();
};

}  // namespace test_support
