#include "reference_host/importer/importer.hpp"

#include <gmock/gmock.h>

#include <boost/uuid/nil_generator.hpp>
#include <functional>
#include <memory>
#include <new>
#include <ostream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "support/allocation_count.hpp"
#include "support/json.hpp"
#include "support/scale.hpp"

namespace reference_host::importer {

bool operator==(const ImportError& left, const ImportError& right) {
  return left.pointer == right.pointer && left.builder == right.builder &&
         left.step == right.step && left.message == right.message;
}

std::ostream& operator<<(std::ostream& stream, const ImportError& error) {
  return stream << '"' << error.pointer << "\" " << error.builder << ' ' << stepName(error.step)
                << ": " << error.message;
}

bool operator==(const Summary& left, const Summary& right) {
  return left.objects == right.objects && left.claimed == right.claimed &&
         left.built == right.built && left.failed == right.failed;
}

std::ostream& operator<<(std::ostream& stream, const Summary& summary) {
  return stream << "objects " << summary.objects << ", claimed " << summary.claimed << ", built "
                << summary.built << ", failed " << summary.failed;
}

namespace {

using document::gxzero::ButtonNode;
using document::gxzero::Node;
using foundation::json::Value;
using gx::zero::Model;
using test_support::json;

struct NotAnException {};

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
    if (command == "fails int") throw NotAnException();
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

  static std::vector<std::u16string> idsOf(const ImportResult& result) {
    std::vector<std::u16string> ids;
    for (const Node& node : result.nodes) {
      ids.push_back(static_cast<ButtonNode::Impl*>(node.get())->getId());
    }
    return ids;
  }

  std::vector<std::string> asked_;
  std::vector<NamedBuilder> builders_{
      {"builder a", std::make_shared<ScriptedBuilder<CodeElementBuilder>>("a", asked_)},
      {"builder b", std::make_shared<ScriptedBuilder<NodeBuilder>>("b", asked_)}};
  Model model_ = Model::create();
};

struct Row {
  const char* description;
  const char* document;
  std::vector<std::u16string> ids;
  std::vector<ImportError> errors;
  Summary summary;
};

TEST_F(ImporterTest, WalksAndBuilds) {
  const Row rows[] = {
      {"no object at all", R"([1, "a", null, true, [[]]])", {}, {}, {0, 0, 0, 0}},
      {"an empty document object", "{}", {}, {}, {1, 0, 0, 0}},
      {"the document itself is claimed", R"({"a": "yes", "id": "1"})", {u"1"}, {}, {1, 1, 1, 0}},
      {"either interface builds",
       R"([{"b": "yes", "id": "1"}, {"a": "yes", "id": "2"}])",
       {u"1", u"2"},
       {},
       {2, 2, 2, 0}},
      {"depth first, members in the map's order",
       R"({"z": {"a": "yes", "id": "3"}, "m": [[{"a": "yes", "id": "1"}], {"x": {"a": "yes", "id": "2"}}]})",
       {u"1", u"2", u"3"},
       {},
       {5, 3, 3, 0}},
      {"a claimed object is not entered, built or failed",
       R"([{"a": "yes", "id": "1", "in": {"a": "yes"}}, {"a": "fails", "in": {"a": "yes"}}])",
       {u"1"},
       {{"/1", "builder a", Step::kBuild, "a cannot build"}},
       {2, 2, 1, 1}},
      {"an error does not end the walk",
       R"({"p": {"a": "fails"}, "q": {"a": "yes", "id": "1"}})",
       {u"1"},
       {{"/p", "builder a", Step::kBuild, "a cannot build"}},
       {3, 2, 1, 1}},
      {"a thrower does not stop the asking",
       R"({"a": "throws", "b": "yes", "id": "1"})",
       {u"1"},
       {},
       {1, 1, 1, 0}},
      {"nobody claims and somebody threw: one error, and the object is not entered",
       R"({"b": "throws", "in": {"a": "yes"}})",
       {},
       {{"", "builder b", Step::kCanBuild, "b cannot tell"}},
       {1, 0, 0, 1}},
      {"of two throwers the first is named",
       R"({"a": "throws", "b": "throws"})",
       {},
       {{"", "builder a", Step::kCanBuild, "a cannot tell"}},
       {1, 0, 0, 1}},
      {"whatever is thrown becomes an error",
       R"([{"a": "throws int"}, {"a": "fails int"}])",
       {},
       {{"/0", "builder a", Step::kCanBuild, "an exception that is no std::exception"},
        {"/1", "builder a", Step::kBuild, "an exception that is no std::exception"}},
       {2, 1, 0, 2}},
      {"an empty node is a failure",
       R"([{"a": "empty"}, {"b": "empty"}])",
       {},
       {{"/0", "builder a", Step::kBuild, "the builder returned no node"},
        {"/1", "builder b", Step::kBuild, "the builder returned no node"}},
       {2, 2, 0, 2}},
      {"pointers: array indexes, escapes, empty names, after leaving containers",
       R"({"a/b": {"m~n": [0, [], {}, {"a": "fails"}]}, "": [[], {"": {"a": "fails"}}], "~1": {"a": "fails"}})",
       {},
       {{"//1/", "builder a", Step::kBuild, "a cannot build"},
        {"/a~1b/m~0n/3", "builder a", Step::kBuild, "a cannot build"},
        {"/~01", "builder a", Step::kBuild, "a cannot build"}},
       {7, 3, 0, 3}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.description);
    const Value document = json(row.document);
    const Value before = document;
    const ImportResult result = import(document);
    EXPECT_EQ(idsOf(result), row.ids);
    EXPECT_EQ(result.errors, row.errors);
    EXPECT_EQ(result.summary, row.summary);
    EXPECT_EQ(document, before);
  }
}

TEST_F(ImporterTest, AsksInOrderUntilSomeoneClaims) {
  import(json(R"({"a": "yes", "b": "yes"})"));
  EXPECT_THAT(asked_, testing::ElementsAre("a"));
  import(json(R"({"b": "yes"})"));
  EXPECT_THAT(asked_, testing::ElementsAre("a", "b"));
  import(json(R"({"a": "throws", "b": "yes"})"));
  EXPECT_THAT(asked_, testing::ElementsAre("a", "b"));
}

TEST_F(ImporterTest, StopsAtTheFirstErrorIfAsked) {
  const Value document = json(
      R"([{"a": "yes", "id": "1"}, {"a": "fails"}, {"a": "yes", "id": "2"}, {"b": "throws"}])");
  const ImportResult result = import(document, OnError::kStop);
  EXPECT_THAT(idsOf(result), testing::ElementsAre(u"1"));
  EXPECT_EQ(result.errors,
            (std::vector<ImportError>{{"/1", "builder a", Step::kBuild, "a cannot build"}}));
  EXPECT_EQ(result.summary, (Summary{2, 2, 1, 1}));
}

TEST_F(ImporterTest, EndsWhereMemoryDoes) {
  for (const char* const document :
       {R"([{}, {"a": "has no memory to tell", "b": "yes"}])", R"([{}, {"b": "has no memory"}])"}) {
    EXPECT_THROW(import(json(document)), std::bad_alloc) << document;
  }
}

TEST_F(ImporterTest, WithoutBuildersEverythingIsWalked) {
  builders_.clear();
  EXPECT_EQ(import(json(R"([{"x": {}}, {}])")).summary, (Summary{3, 0, 0, 0}));
}

TEST_F(ImporterTest, NodesOutliveTheModelHandle) {
  ImportResult result = import(json(R"({"a": "yes", "id": "1"})"));
  model_ = Model();
  EXPECT_THAT(idsOf(result), testing::ElementsAre(u"1"));
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
  EXPECT_EQ(result.summary, (Summary{kLevels + 1, 1, 0, 1}));
}

/// Says no without allocating.
class UninterestedBuilder final : public NodeBuilder {
 public:
  bool canBuild(const Value& json) const override {
    return json.get_if<Value::Object>() == nullptr;
  }
  Node build(const Model&, const Value&) const override { return Node(); }
};

TEST_F(ImporterTest, AllocationsDoNotGrowWithTheDocument) {
  builders_ = {{"uninterested", std::make_shared<UninterestedBuilder>()}};
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

TEST(StepName, IsTheOperation) {
  EXPECT_STREQ(stepName(Step::kCanBuild), "canBuild");
  EXPECT_STREQ(stepName(Step::kBuild), "build");
}

}  // namespace
}  // namespace reference_host::importer
