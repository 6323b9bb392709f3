#include "reference_host/diagnosis/read_trace.hpp"

#include <gtest/gtest.h>

#include <boost/uuid/nil_generator.hpp>
#include <memory>
#include <stdexcept>

#include "reference_host/diagnosis/culprit.hpp"
#include "support/json.hpp"

namespace reference_host::diagnosis {
namespace {

using foundation::json::Value;

/// Reads a copy of an array whose element most likely lies where a copy of another value lay.
class Reuser final : public tessel::build::json::NodeBuilder {
 public:
  bool canBuild(const Value&) const override { return true; }

  document::gxzero::Node build(const gx::zero::Model& model, const Value& json) const override {
    std::make_unique<Value>(json["first"]).reset();
    const Value list = json["list"];
    const auto* elements = list.get_if<Value::Array>();
    if (elements == nullptr) throw std::runtime_error("no list");
    for (const Value& element : *elements) {
      if (element["at"].get_if<double>() == nullptr) throw std::runtime_error("no number");
    }
    return document::gxzero::ButtonNode::Builder(model).createButtonNode(boost::uuids::nil_uuid());
  }
};

TEST(ReadTraceTest, TellsApartWhatLiesAtOneAddressOneAfterTheOther) {
  const importer::NamedBuilder builder("Reuser", std::make_shared<const Reuser>());
  const auto culprit = findCulprit(builder, importer::Step::kBuild,
                                   test_support::json(R"({"first": {}, "list": [{"at": "1"}]})"));
  ASSERT_TRUE(culprit);
  EXPECT_EQ(pointerOf(culprit->place), "/list/0/at");
}

}  // namespace
}  // namespace reference_host::diagnosis
