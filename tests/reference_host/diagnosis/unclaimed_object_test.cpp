#include "reference_host/diagnosis/unclaimed_object.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

#include "reference_host/diagnosis/document_check.hpp"
#include "support/json.hpp"

namespace reference_host::diagnosis {
namespace {

using foundation::json::Value;

/// Tells its objects apart by their type, and need not have one.
class GaugeBuilder final : public tessel::build::json::NodeBuilder {
 public:
  bool canBuild(const Value& json) const override {
    if (json["className"] != Value("Gauge")) return false;
    if (!json.hasOwnProperty("context")) throw std::runtime_error("no context");
    return json["context"]["type"] == Value("round");
  }
  document::gxzero::Node build(const gx::zero::Model&, const Value&) const override { return {}; }
};

TEST(UnclaimedObjectTest, AGenericControlMayHaveNoType) {
  const std::vector<importer::NamedBuilder> builders{
      {"Gauge", std::make_shared<const GaugeBuilder>()}};
  const Knowledge knowledge(builders, {"Gauge", "round"});
  const auto problems =
      checkDocument(knowledge, test_support::json(R"({"className": "Gauge", "context": {}})"),
                    Warnings::kYes)
          .problems;
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_EQ(problems[0].code, Code::kUnknownType);
  EXPECT_EQ(problems[0].member, "/context/type");
  EXPECT_EQ(problems[0].message, R"(object of class "Gauge": has no type)");
}

}  // namespace
}  // namespace reference_host::diagnosis
