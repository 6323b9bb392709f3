#include <gtest/gtest.h>

#include <boost/uuid/nil_generator.hpp>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "reference_host/importer/importer.hpp"
#include "reference_host/json/parse.hpp"

namespace reference_host::importer {
namespace {

using document::gxzero::ButtonNode;
using document::gxzero::Node;
using foundation::json::Value;
using gx::zero::Model;

/// Claims objects with an "a", cannot tell of those with an "unclear", and fails on an "a" of text.
/// Keeps what the document was each time.
class WatchingBuilder final : public tessel::build::json::NodeBuilder {
 public:
  explicit WatchingBuilder(const Value& document) : document_(document) {}

  bool canBuild(const Value& json) const override {
    seen.push_back(pretty_print(document_));
    if (json.hasOwnProperty("unclear")) throw std::runtime_error("cannot tell");
    return json.hasOwnProperty("a");
  }
  Node build(const Model& model, const Value& json) const override {
    if (json["a"].get_if<std::string>() != nullptr) throw std::runtime_error("cannot build");
    return ButtonNode::Builder(model).createButtonNode(boost::uuids::nil_uuid());
  }

  mutable std::vector<std::string> seen;

 private:
  const Value& document_;
};

TEST(ConsumedDocument, IsFreedAsTheWalkLeavesItAndItsFailedObjectsAreKept) {
  const Value whole = json::parse(
      R"([{"a":1}, {"x":[{"a":"text","n":1},7], "y":{"unclear":2}}, {}, {"a":1,"b":{}}])");
  Value document = whole;
  const auto watching = std::make_shared<WatchingBuilder>(document);
  const std::vector<NamedBuilder> builders{{"builder", watching}};
  const ImportResult kept = importDocument(builders, Model::create(), whole);
  EXPECT_EQ(watching->seen.back(), pretty_print(whole));

  const ImportResult result = importDocument(builders, Model::create(), std::move(document));
  EXPECT_EQ(watching->seen.back(),
            pretty_print(json::parse(R"([null, null, null, {"a":1,"b":{}}])")));
  EXPECT_EQ(result.nodes.size(), 2U);
  EXPECT_EQ(result.summary.objects, kept.summary.objects);
  EXPECT_EQ(result.summary.built, kept.summary.built);
  ASSERT_EQ(result.errors.size(), 2U);
  const char* const objects[] = {R"({"a":"text","n":1})", R"({"unclear":2})"};
  for (std::size_t index = 0; index != 2; ++index) {
    EXPECT_EQ(result.errors[index].pointer, kept.errors[index].pointer);
    EXPECT_EQ(result.errors[index].message, kept.errors[index].message);
    EXPECT_EQ(result.errors[index].object, json::parse(objects[index]));
    EXPECT_EQ(kept.errors[index].object, Value());
  }
}

}  // namespace
}  // namespace reference_host::importer
