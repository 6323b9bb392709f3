// Node builders of other bundles. Their manifests say which of them each bundle has.

#include <boost/uuid/uuid.hpp>
#include <string>
#include <utility>

#include "fl/i18n.hpp"
#include "registration.hpp"
#include "tessel/build/json/builders.hpp"

namespace service_runtime_test {

/// Claims everything and makes a line of it that has the maker's name as its anchor. Its life is in
/// the journal.
class LineMaker : public tessel::build::json::NodeBuilder {
 public:
  explicit LineMaker(std::string name) : name_(std::move(name)) { note("construct " + name_); }
  ~LineMaker() override { note("destroy " + name_); }
  LineMaker(const LineMaker&) = delete;
  LineMaker& operator=(const LineMaker&) = delete;

  bool canBuild(const foundation::json::Value& /*json*/) const override { return true; }

  document::gxzero::Node build(const gx::zero::Model& model,
                               const foundation::json::Value& /*json*/) const override {
    using document::gxzero::LumoAppLineNode;
    auto line = LumoAppLineNode::Builder(model).createLumoAppLineNode(boost::uuids::uuid{});
    line.get()->setAnchorId(fl::i18n::utf8_to_ustring(name_));
    return document::gxzero::Node(std::move(line));
  }

 private:
  const std::string name_;
};

/// What the product's header line takes for the product's own inline builder.
class StandIn final : public LineMaker {
 public:
  StandIn() : LineMaker("StandIn") {}
};

/// What it is not meant to be given: it ranks higher, and its `test_id` only begins alike.
class Stranger final : public LineMaker {
 public:
  Stranger() : LineMaker("Stranger") {}
};

#include "entry_points.inc"

}  // namespace service_runtime_test
