// A bundle with a builder that does as its object says, one that has nothing to do, and one whose
// reference nobody satisfies.

#include <array>
#include <boost/uuid/nil_generator.hpp>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <tuple>

#include "cppmicroservices/BundleContext.h"
#include "cppmicroservices/GlobalConfig.h"
#include "cppmicroservices/servicecomponent/detail/ComponentInstance.hpp"
#include "cppmicroservices/servicecomponent/detail/ComponentInstanceImpl.hpp"
#include "document/gxzero.hpp"
#include "tessel/build/json/builders.hpp"

namespace tool_test {

using cppmicroservices::service::component::detail::ComponentInstance;
using cppmicroservices::service::component::detail::ComponentInstanceImpl;
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

using tool_test::ComponentInstance;
using tool_test::ComponentInstanceImpl;

extern "C" US_ABI_EXPORT ComponentInstance* NewInstance_tool_test_ObedientBuilder() {
  return new (std::nothrow) ComponentInstanceImpl<tool_test::ObedientBuilder,
                                                  std::tuple<tool_test::CodeElementBuilder>>();
}
extern "C" US_ABI_EXPORT void DeleteInstance_tool_test_ObedientBuilder(
    ComponentInstance* instance) {
  delete instance;
}

extern "C" US_ABI_EXPORT ComponentInstance* NewInstance_tool_test_IdleBuilder() {
  return new (std::nothrow)
      ComponentInstanceImpl<tool_test::IdleBuilder, std::tuple<tool_test::NodeBuilder>>();
}
extern "C" US_ABI_EXPORT void DeleteInstance_tool_test_IdleBuilder(ComponentInstance* instance) {
  delete instance;
}

extern "C" US_ABI_EXPORT ComponentInstance* NewInstance_tool_test_WaitingBuilder() {
  return new (std::nothrow)
      ComponentInstanceImpl<tool_test::WaitingBuilder, std::tuple<tool_test::NodeBuilder>,
                            std::shared_ptr<tool_test::NodeBuilder>>(
          std::array<std::string, 1>{"somebody"});
}
extern "C" US_ABI_EXPORT void DeleteInstance_tool_test_WaitingBuilder(ComponentInstance* instance) {
  delete instance;
}

extern "C" US_ABI_EXPORT void _us_set_bundle_context_instance_tool_test_waiting(
    cppmicroservices::BundleContextPrivate*) {}
