#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "contract/outcome.hpp"
#include "support/json.hpp"
#include "support/rows.hpp"
#include "support/scripted_node_builder.hpp"
#include "widgets/task_builders.hpp"

namespace tessel::build::json::widgets {
namespace {

using contract::Outcome;
using test_support::expectRows;
using test_support::json;
using test_support::Row;
using test_support::ScriptedNodeBuilder;
using Strings = std::vector<std::string>;

const std::string kBuilder = "LumoTaskHeaderBuilderImpl";
const std::string kStart = "Starting to build a LumoAppLineNode";
const std::string kAnchor = "Building the anchorId for the LumoAppLineNode";
const std::string kFinish = "Finished building the LumoAppLineNode";

/// A header line as exported, with lines as its children.
Value line(const std::string& anchor, const Strings& children = {}) {
  Value::Object members{{"class", "document::gxzero::LumoAppLineNode"}, {"anchorId", anchor}};
  Value::Array lines;
  for (const std::string& child : children) lines.push_back(line(child));
  if (!lines.empty()) members["children"] = lines;
  return members;
}

TEST(TaskHeaderBuilder, OffersEachChildToTheInlineBuilder) {
  const std::string start = R"({"className":"LumoAppLineNode","anchorId":"a","children":)";
  const std::string node = R"({"class":"document::gxzero::LumoAppLineNode","anchorId":"M_a")";
  const std::string task = R"({"class":"document::gxzero::LumoAppIntegratedInlineNode","id":"t",
      "lumoTaskData":{"class":"lumocode::contentmodel::gxzero::LumoTaskData","taskId":"",
      "appIdentifier":"","view":"","collapsed":"","appVariables":"","appVariablesUserMap":"",
      "executionModel":"","appState":"","autoRun":"","text":"","numCodeLines":0}})";
  const std::string asked = "Checking if can build LumoAppIntegratedInline";
  expectRows(
      kBuilder,
      {Row("a text and a number are dropped, a task is built")
           .object(start + R"([{"className":"TextNode"},7,
               {"className":"LumoAppIntegratedInlineNode","instanceId":"t"}]})")
           .asked("Checking if can build LumoAppLineNode")
           .node(node + R"(,"children":[)" + task + "]}")
           .records({kStart, kAnchor, asked, asked, "Incoming JSON was not an Object", asked,
                     "Starting to build a LumoAppIntegratedNode", "Setting the instanceId property",
                     "Finished building a LumoAppIntegratedNode", kFinish}),
       Row("a task that fails stays a root; nothing after it is tried")
           .object(start + R"([{"className":"LumoAppIntegratedInlineNode","instanceId":"t"},
               {"className":"LumoAppIntegratedInlineNode","numOfCodeLines":"12"},
               {"className":"LumoAppIntegratedInlineNode"}]})")
           .node(node + R"(,"children":[)" + task + "]}")
           .stray(R"({"class":"document::gxzero::LumoAppIntegratedInlineNode","id":""})")
           .error("invalid conversion: string to double")
           .records({kStart, kAnchor, asked, "Starting to build a LumoAppIntegratedNode",
                     "Setting the instanceId property", "Finished building a LumoAppIntegratedNode",
                     asked, "Starting to build a LumoAppIntegratedNode",
                     "Setting the numOfCodeLines property"}),
       Row("children that are no array")
           .object(start + "{}}")
           .node(node + "}")
           .error("invalid conversion: object to array")
           .records({kStart, kAnchor}),
       Row("neither children nor anchor")
           .object(R"({"className":"LumoAppLineNode"})")
           .node(R"({"class":"document::gxzero::LumoAppLineNode","anchorId":""})")
           .error("invalid conversion: undefined to array")
           .records({kStart, kAnchor})});
}

Strings lettersOf(const std::string& text) {
  Strings letters;
  for (const char letter : text) letters.emplace_back(1, letter);
  return letters;
}

TEST(TaskHeaderBuilder, DoesAsItsChildrensBuilderSays) {
  struct Script {
    const char* description;
    Strings script;        // a word for each child
    std::string built;     // "a" for each child that is asked, "b" for one that is built
    std::string appended;  // anchors of one letter
    std::string error;
    std::string strays;  // anchors of further roots
  };
  const Script rows[] = {
      {"declined ones leave no trace", {"no", "node a", "no", "node b"}, "aabaab", "ab", "", ""},
      {"empty ones are passed over", {"empty", "node a", "empty"}, "ababab", "a", "", ""},
      {"a node that is there already stays where it is",
       {"node a", "node b", "first", "node c"},
       "abababab",
       "abc",
       "",
       ""},
      {"asking fails", {"node a", "throw asked", "node b"}, "aba", "a", "asked", ""},
      {"building fails half-way", {"node a", "half h", "node b"}, "abab", "a", "half h", "h"},
      {"a node of another model",
       {"node a", "foreign", "node b"},
       "abab",
       "a",
       "the element belongs to another model",
       ""},
      {"the line itself: the insertion is undone",
       {"node a", "line", "node b"},
       "abab",
       "a",
       "an element cannot contain itself",
       ""},
  };
  for (const Script& row : rows) {
    SCOPED_TRACE(row.description);
    const auto children = std::make_shared<ScriptedNodeBuilder>();
    const LumoTaskHeaderBuilderImpl builder(children);
    const Value value(Value::Object{
        {"anchorId", "M_1"}, {"children", Value::Array(row.script.begin(), row.script.end())}});
    Outcome expected;
    expected.error = row.error;
    expected.records = {kStart, kAnchor};
    if (row.error.empty()) expected.records.push_back(kFinish);
    Strings calls;
    std::size_t child = 0;
    for (const char call : row.built) {
      if (call == 'a') ++child;
      calls.push_back((call == 'a' ? "canBuild " : "build ") + row.script.at(child - 1));
    }
    expected.roots = {line("M_1", lettersOf(row.appended))};
    for (const std::string& anchor : lettersOf(row.strays)) expected.roots.push_back(line(anchor));
    Outcome actual = contract::buildOf(builder, value);
    actual.created.clear();
    EXPECT_EQ(actual, expected);
    EXPECT_EQ(children->takeCalls(), calls);
    EXPECT_EQ(children->heldForeignElements(), 0U);
  }
}

TEST(TaskHeaderBuilder, WhatIsNoExceptionPassesToo) {
  const LumoTaskHeaderBuilderImpl builder(std::make_shared<ScriptedNodeBuilder>());
  const Model model = Model::create();
  EXPECT_THROW(builder.build(model, json(R"({"children":["node a","throw a number"]})")), int);
  EXPECT_EQ(model.get()->getHeldElementCount(), 0U);
  EXPECT_EQ(contract::rootsOf(model), (Value::Array{line("", {"a"})}));
}

TEST(TaskHeaderBuilder, TakesAChildFromAnotherLine) {
  const auto children = std::make_shared<ScriptedNodeBuilder>();
  const LumoTaskHeaderBuilderImpl builder(children);
  const Model model = Model::create();
  builder.build(model, json(R"({"anchorId":"1","children":["node a","node b"]})"));
  builder.build(model, json(R"({"anchorId":"2","children":["first"]})"));
  EXPECT_EQ(contract::rootsOf(model), (Value::Array{line("M_1", {"b"}), line("M_2", {"a"})}));
}

TEST(TaskHeaderBuilder, SharesTheBuilderThatItIsGivenForLife) {
  const auto children = std::make_shared<ScriptedNodeBuilder>();
  std::shared_ptr<NodeBuilder> injected = children;
  auto builder = std::make_unique<LumoTaskHeaderBuilderImpl>(injected);
  injected = std::make_shared<ScriptedNodeBuilder>();
  EXPECT_EQ(children.use_count(), 2);
  const Model model = Model::create();
  builder->build(model, json(R"({"children":["node a"]})"));
  EXPECT_THAT(children->takeCalls(), ::testing::ElementsAre("canBuild node a", "build node a"));
  EXPECT_EQ(children.use_count(), 2) << "a build keeps no share of its own";
  builder.reset();
  EXPECT_EQ(children.use_count(), 1);
}

}  // namespace
}  // namespace tessel::build::json::widgets
