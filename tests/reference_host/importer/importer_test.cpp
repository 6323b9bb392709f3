#include "reference_host/importer/importer.hpp"

#include <gmock/gmock.h>

#include <boost/uuid/nil_generator.hpp>
#include <cstddef>
#include <memory>
#include <new>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "support/allocation_count.hpp"
#include "support/json.hpp"
#include "support/scale.hpp"

namespace reference_host::importer {

namespace {

using document::gxzero::ButtonNode;
using document::gxzero::Node;
using foundation::json::Value;
using gx::zero::Model;
using test_support::json;

/// Does what the object's members under the builder's own key say: "yes" claims and builds, a node
/// with the object's "id"; "throws", "throws int" and "fails", "fails int", "empty" are the ways to
/// go wrong in the two steps, "has no memory to tell" and "has no memory" those that are nobody's
/// fault. Says no to an object without the key.
template <typename Interface>
class ScriptedBuilder final : public Interface {
 public:
  ScriptedBuilder(std::string key, std::vector<std::string>& asked)
      : key_(std::move(key)), asked_(asked) {}

  bool canBuild(const Value& json) const override {
    asked_.push_back(key_);
    const std::string command = commandIn(json);
    if (command == "throws") throw std::runtime_error(key_ + " cannot tell");
    if (command == "throws int") throw 7;
    if (command == "has no memory to tell") throw std::bad_alloc();
    return !command.empty();
  }

  Node build(const Model& model, const Value& json) const override {
    const std::string command = commandIn(json);
    if (command == "fails") throw std::runtime_error(key_ + " cannot build");
    if (command == "fails int") throw 7;
    if (command == "has no memory") throw std::bad_alloc();
    if (command == "empty") return Node();
    ButtonNode node = ButtonNode::Builder(model).createButtonNode(boost::uuids::nil_uuid());
    if (const auto* id = json["id"].get_if<std::string>()) {
      node.get()->setId(std::u16string(id->begin(), id->end()));
    }
    return node;
  }

 private:
  std::string commandIn(const Value& json) const {
    const auto* command = json[key_].get_if<std::string>();
    return command == nullptr ? std::string() : *command;
  }

  std::string key_;
  std::vector<std::string>& asked_;
};

using CodeElementBuilder = tessel::build::json::code::CodeElementBuilder;
using NodeBuilder = tessel::build::json::NodeBuilder;

class ImporterTest : public testing::Test {
 protected:
  ImportResult import(const Value& document, OnError onError = OnError::kContinue) {
    asked_.clear();
    return importDocument(builders_, model_, document, onError);
  }

  std::vector<std::string> asked_;
  std::vector<NamedBuilder> builders_{
      {"A", std::make_shared<ScriptedBuilder<CodeElementBuilder>>("a", asked_)},
      {"B", std::make_shared<ScriptedBuilder<NodeBuilder>>("b", asked_)}};
  Model model_ = Model::create();
};

/// The ids of the nodes.
std::string idsIn(const ImportResult& result) {
  std::u16string ids;
  for (const Node& node : result.nodes) ids += static_cast<ButtonNode::Impl*>(node.get())->getId();
  return std::string(ids.begin(), ids.end());
}

/// Each error as "pointer builder step: message", in a line of its own.
std::string errorsIn(const ImportResult& result) {
  std::string errors;
  for (const ImportError& error : result.errors) {
    errors += error.pointer + ' ' + error.builder + ' ' + stepName(error.step) + ": " +
              error.message + '\n';
  }
  return errors;
}

/// How many objects there were, were claimed, were built, and failed.
std::string countsIn(const ImportResult& result) {
  std::ostringstream counts;
  const Summary& summary = result.summary;
  counts << summary.objects << ' ' << summary.claimed << ' ' << summary.built << ' '
         << summary.failed;
  return counts.str();
}

struct Row {
  const char* description;
  const char* document;
  const char* ids;
  const char* counts;
  const char* errors;
};

constexpr Row kRows[] = {
    {"no object at all", R"([1, "a", null, true, [[]]])", "", "0 0 0 0", ""},
    {"the document itself is claimed", R"({"a": "yes", "id": "1"})", "1", "1 1 1 0", ""},
    {"either interface builds", R"([{"b": "yes", "id": "1"}, {"a": "yes", "id": "2"}])", "12",
     "2 2 2 0", ""},
    {"depth first, members in the map's order",
     R"({"z": {"a": "yes", "id": "3"},
         "m": [[{"a": "yes", "id": "1"}], {"x": {"a": "yes", "id": "2"}}]})",
     "123", "5 3 3 0", ""},
    {"a claimed object is not entered, built or failed, and the walk goes on",
     R"([{"a": "yes", "id": "1", "in": {"a": "yes"}}, {"a": "fails", "in": {"a": "yes"}}, {}])",
     "1", "3 2 1 1", "/1 A build: a cannot build\n"},
    {"a thrower does not stop the asking", R"({"a": "throws", "b": "yes", "id": "1"})", "1",
     "1 1 1 0", ""},
    {"nobody claims and somebody threw: one error, and the object is not entered",
     R"({"b": "throws", "in": {"a": "yes"}})", "", "1 0 0 1", " B canBuild: b cannot tell\n"},
    {"of two throwers the first is named", R"({"a": "throws", "b": "throws"})", "", "1 0 0 1",
     " A canBuild: a cannot tell\n"},
    {"whatever is thrown becomes an error", R"([{"a": "throws int"}, {"a": "fails int"}])", "",
     "2 1 0 2",
     "/0 A canBuild: an exception that is no std::exception\n"
     "/1 A build: an exception that is no std::exception\n"},
    {"an empty node is a failure", R"({"b": "empty"})", "", "1 1 0 1",
     " B build: the builder returned no node\n"},
    {"pointers: array indexes, escapes, empty names, after leaving containers",
     R"({"a/b": {"m~n": [0, [], {}, {"a": "fails"}]}, "": [[], {"": {"a": "fails"}}],
         "~1": {"a": "fails"}})",
     "", "7 3 0 3",
     "//1/ A build: a cannot build\n"
     "/a~1b/m~0n/3 A build: a cannot build\n"
     "/~01 A build: a cannot build\n"},
};

TEST_F(ImporterTest, WalksAndBuilds) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.description);
    const Value document = json(row.document);
    const Value before = document;
    const ImportResult result = import(document);
    EXPECT_EQ(idsIn(result), row.ids);
    EXPECT_EQ(countsIn(result), row.counts);
    EXPECT_EQ(errorsIn(result), row.errors);
    EXPECT_EQ(document, before);
  }
}

TEST_F(ImporterTest, AsksInOrderUntilSomeoneClaims) {
  import(json(R"({"a": "yes", "b": "yes"})"));
  EXPECT_THAT(asked_, testing::ElementsAre("a"));
  for (const char* const document : {R"({"b": "yes"})", R"({"a": "throws", "b": "yes"})"}) {
    import(json(document));
    EXPECT_THAT(asked_, testing::ElementsAre("a", "b")) << document;
  }
}

TEST_F(ImporterTest, StopsAtTheFirstErrorIfAsked) {
  const Value document = json(
      R"([{"a": "yes", "id": "1"}, {"a": "fails"}, {"a": "yes", "id": "2"}, {"b": "throws"}])");
  const ImportResult result = import(document, OnError::kStop);
  EXPECT_EQ(idsIn(result), "1");
  EXPECT_EQ(errorsIn(result), "/1 A build: a cannot build\n");
  EXPECT_EQ(countsIn(result), "2 2 1 1");
}

TEST_F(ImporterTest, EndsWhereMemoryDoes) {
  for (const char* const document :
       {R"([{}, {"a": "has no memory to tell", "b": "yes"}])", R"([{}, {"b": "has no memory"}])"}) {
    EXPECT_THROW(import(json(document)), std::bad_alloc) << document;
  }
}

TEST_F(ImporterTest, NestingHasNoBound) {
  constexpr std::size_t kLevels = 500'000 / test_support::kScale;  // of two containers each
  Value document = json(R"({"a": "fails"})");
  std::string pointer;
  for (std::size_t level = 0; level < kLevels; ++level) {
    Value::Object members;
    members.emplace("x", std::move(document));
    Value::Array elements;
    elements.emplace_back(std::move(members));
    document = Value(std::move(elements));
    pointer += "/0/x";
  }
  const ImportResult result = import(document);
  ASSERT_EQ(result.errors.size(), 1U);
  EXPECT_TRUE(result.errors.front().pointer == pointer);
  EXPECT_EQ(countsIn(result), std::to_string(kLevels + 1) + " 1 0 1");
  EXPECT_EQ(countsIn(importDocument(builders_, model_, std::move(document))), countsIn(result));
}

TEST_F(ImporterTest, AllocationsDoNotGrowWithTheDocument) {
  builders_.clear();
  const auto documentOf = [](std::size_t objects) {
    return Value(Value::Array(objects, json(R"({"x": [{}, {"y": {}}]})")));
  };
  const Value small = documentOf(10);
  const Value large = documentOf(1000);
  const auto walk = [&](const Value& document, std::size_t objects) {
    EXPECT_EQ(importDocument(builders_, model_, document).summary.objects, objects);
  };
  EXPECT_EQ(test_support::allocationsOf([&] { walk(large, 4000); }),
            test_support::allocationsOf([&] { walk(small, 40); }));
}

}  // namespace
}  // namespace reference_host::importer
