// What the header line's builder does with the children of its object.

#include <gmock/gmock.h>

#include <cstddef>
#include <exception>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "support/build_outcome.hpp"
#include "support/json.hpp"
#include "support/records.hpp"
#include "support/scripted_node_builder.hpp"
#include "support/task_case.hpp"
#include "widgets/task_builders.hpp"

namespace tessel::build::json::widgets {
namespace {

using test_support::buildWith;
using test_support::exportedLine;
using test_support::json;
using test_support::Outcome;
using test_support::Records;
using test_support::ScriptedNodeBuilder;
using test_support::TaskCase;
using Strings = std::vector<std::string>;

const std::string kStart = "Starting to build a LumoAppLineNode";
const std::string kAnchor = "Building the anchorId for the LumoAppLineNode";
const std::string kFinish = "Finished building the LumoAppLineNode";
const std::string kCheckingChild = "Checking if can build LumoAppIntegratedInline";
const std::string kNotAnObject = "Incoming JSON was not an Object";

/// The builder with the children's builder that it has in the product.
LumoTaskHeaderBuilderImpl headerBuilder() {
  return LumoTaskHeaderBuilderImpl(std::make_shared<LumoTaskIntegratedInlineNodeBuilderImpl>());
}

Records joined(const std::vector<Records>& parts) {
  Records all;
  for (const Records& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

TEST(TaskHeaderChildren, OffersEachChildToTheInlineBuilder) {
  const TaskCase first = TaskCase().give(0).give(11);
  const TaskCase second = TaskCase().giveAll();
  const TaskCase wrong = TaskCase().give(0).giveOther(11, {"string", Value("12")});
  const std::string stray = R"({"class":"document::gxzero::LumoAppIntegratedInlineNode",)"
                            R"("id":"its instanceId"})";
  const Records asked = {kCheckingChild};
  const Records declined = {kCheckingChild, kNotAnObject};
  const Value text = json(R"({"className":"TextNode","text":"x"})");
  const Value headerLine = json(R"({"className":"LumoAppLineNode","children":[]})");
  const Value control = json(R"({"className":"LumoControlNode","context":{"type":"slider"}})");
  const Value untyped = json(R"({"className":7})");

  struct Row {
    const char* description;
    Value::Array children;
    Strings built;
    std::string error;
    std::string strays;
    Records records;  // between the anchor and the end
  };
  const Row rows[] = {
      {"none", {}, {}, "", "", {}},
      {"a text, then two tasks, in order",
       {text, first.json(), second.json()},
       {first.expected().node, second.expected().node},
       "",
       "",
       joined({asked, asked, first.expected().records, asked, second.expected().records})},
      {"equal tasks are two",
       {first.json(), first.json()},
       {first.expected().node, first.expected().node},
       "",
       "",
       joined({asked, first.expected().records, asked, first.expected().records})},
      {"what is no object",
       {Value(1.0), Value("LumoAppIntegratedInlineNode"), Value(), Value::Array{first.json()}},
       {},
       "",
       "",
       joined({declined, declined, declined, declined})},
      {"other builders' objects",
       {control, headerLine, json("{}")},
       {},
       "",
       "",
       joined({asked, asked, asked})},
      {"a task between others",
       {Value(true), first.json(), control},
       {first.expected().node},
       "",
       "",
       joined({declined, asked, first.expected().records, asked})},
      {"a task that fails stays a root; nothing after it is tried",
       {second.json(), wrong.json(), first.json()},
       {second.expected().node},
       "invalid conversion: string to double",
       "," + stray,
       joined({asked, second.expected().records, asked, wrong.expected().records})},
      {"a child that cannot be asked",
       {first.json(), untyped, second.json()},
       {first.expected().node},
       "invalid conversion: double to string",
       "",
       joined({asked, first.expected().records, asked})},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.description);
    const Value value(Value::Object{
        {"className", "LumoAppLineNode"}, {"anchorId", "M_1"}, {"children", row.children}});
    const std::string built = exportedLine(R"("M_1")", row.built);
    const bool succeeds = row.error.empty();
    EXPECT_EQ(
        buildWith(headerBuilder(), value),
        (Outcome{
            succeeds ? built : "", row.error, "[" + built + row.strays + "]",
            joined({{kStart, kAnchor}, row.records, succeeds ? Records{kFinish} : Records{}})}));
  }
}

TEST(TaskHeaderChildren, DoesAsItsChildrensBuilderSays) {
  struct Row {
    const char* description;
    Strings script;    // a word for each child
    Strings calls;     // of the children's builder
    Strings appended;  // anchors
    std::string error;
    Strings strays;  // anchors of further roots
    std::size_t operations;
  };
  const Row rows[] = {
      {"all declined", {"no", "no"}, {"canBuild no", "canBuild no"}, {}, "", {}, 0},
      {"declined ones leave no trace",
       {"no", "node a", "no", "node b"},
       {"canBuild no", "canBuild node a", "build node a", "canBuild no", "canBuild node b",
        "build node b"},
       {"a", "b"},
       "",
       {},
       2},
      {"empty ones are passed over in silence",
       {"empty", "node a", "empty"},
       {"canBuild empty", "build empty", "canBuild node a", "build node a", "canBuild empty",
        "build empty"},
       {"a"},
       "",
       {},
       1},
      {"a node that is there already stays where it is",
       {"node a", "node b", "first", "node c"},
       {"canBuild node a", "build node a", "canBuild node b", "build node b", "canBuild first",
        "build first", "canBuild node c", "build node c"},
       {"a", "b", "c"},
       "",
       {},
       3},
      {"asking fails",
       {"node a", "throw asked", "node b"},
       {"canBuild node a", "build node a", "canBuild throw asked"},
       {"a"},
       "asked",
       {},
       1},
      {"asking for the first one fails",
       {"throw asked"},
       {"canBuild throw asked"},
       {},
       "asked",
       {},
       0},
      {"building fails half-way",
       {"node a", "half h", "node b"},
       {"canBuild node a", "build node a", "canBuild half h", "build half h"},
       {"a"},
       "half h",
       {"h"},
       1},
      {"a node of another model",
       {"node a", "foreign", "node b"},
       {"canBuild node a", "build node a", "canBuild foreign", "build foreign"},
       {"a"},
       "the element belongs to another model",
       {},
       1},
      {"the line itself: the insertion is undone",
       {"node a", "line", "node b"},
       {"canBuild node a", "build node a", "canBuild line", "build line"},
       {"a"},
       "an element cannot contain itself",
       {},
       2},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.description);
    const auto children = std::make_shared<ScriptedNodeBuilder>();
    const LumoTaskHeaderBuilderImpl builder(children);
    const Value value(Value::Object{
        {"anchorId", "M_1"}, {"children", Value::Array(row.script.begin(), row.script.end())}});
    Strings appended;
    for (const std::string& anchor : row.appended)
      appended.push_back(exportedLine('"' + anchor + '"'));
    const std::string built = exportedLine(R"("M_1")", appended);
    std::string strays;
    for (const std::string& anchor : row.strays) strays += "," + exportedLine('"' + anchor + '"');
    const bool succeeds = row.error.empty();
    EXPECT_EQ(buildWith(builder, value),
              (Outcome{succeeds ? built : "", row.error, "[" + built + strays + "]",
                       succeeds ? Records{kStart, kAnchor, kFinish} : Records{kStart, kAnchor}}));
    EXPECT_EQ(children->takeCalls(), row.calls);
    EXPECT_EQ(children->heldForeignElements(), 0U);

    const Model model = Model::create();
    try {
      LumoTaskHeaderBuilderImpl(std::make_shared<ScriptedNodeBuilder>()).build(model, value);
    } catch (const std::exception&) {
    }
    const std::size_t undone = row.error == "an element cannot contain itself" ? 1 : 0;
    EXPECT_EQ(model.get()->getOperationCounts().opened, row.operations);
    EXPECT_EQ(model.get()->getOperationCounts().committed, row.operations - undone);
  }
}

TEST(TaskHeaderChildren, WhatIsNoExceptionPassesToo) {
  const LumoTaskHeaderBuilderImpl builder(std::make_shared<ScriptedNodeBuilder>());
  const Model model = Model::create();
  int caught = 0;
  try {
    builder.build(model, json(R"({"children":["node a","throw a number"]})"));
  } catch (int number) {
    caught = number;
  }
  EXPECT_EQ(caught, 42);
  EXPECT_EQ(model.get()->getHeldElementCount(), 0U);
  EXPECT_EQ(test_support::exportedRoots(model),
            "[" + exportedLine(R"("")", {exportedLine(R"("a")")}) + "]");
}

TEST(TaskHeaderChildren, TakesAChildFromAnotherLine) {
  const auto children = std::make_shared<ScriptedNodeBuilder>();
  const LumoTaskHeaderBuilderImpl builder(children);
  const Model model = Model::create();
  builder.build(model, json(R"({"anchorId":"1","children":["node a","node b"]})"));
  builder.build(model, json(R"({"anchorId":"2","children":["first"]})"));
  EXPECT_EQ(test_support::exportedRoots(model),
            "[" + exportedLine(R"("M_1")", {exportedLine(R"("b")")}) + "," +
                exportedLine(R"("M_2")", {exportedLine(R"("a")")}) + "]");
}

TEST(TaskHeaderChildren, HandsOnTheModelAndTheWholeChild) {
  const auto children = std::make_shared<ScriptedNodeBuilder>();
  const LumoTaskHeaderBuilderImpl builder(children);
  const Model model = Model::create();
  builder.build(model, json(R"({"children":[{"b":[1,null],"a":"x"},[],"node a"]})"));
  EXPECT_THAT(children->takeCalls(),
              ::testing::ElementsAre("canBuild {\n  \"a\": \"x\",\n  \"b\": [\n    1,\n    null\n"
                                     "  ]\n}",
                                     "canBuild []", "canBuild node a", "build node a"));
  EXPECT_EQ(children->lastModel(), model.get());
}

TEST(TaskHeaderChildren, CreatesTheLineBeforeItsChildren) {
  const Model model = Model::create();
  headerBuilder().build(model, json(R"({"children":[{"className":"LumoAppIntegratedInlineNode"},
                                        {"className":"LumoAppIntegratedInlineNode"}]})"));
  std::vector<std::u16string> classes;
  for (const auto& element : model.get()->getElements()) {
    classes.push_back(element->metaClass().get()->getQualifiedName());
  }
  const std::u16string child = u"document::gxzero::LumoAppIntegratedInlineNode";
  EXPECT_EQ(classes,
            (std::vector<std::u16string>{u"document::gxzero::LumoAppLineNode", child, child}));
  EXPECT_EQ(model.get()->getRoots().size(), 1U);
}

TEST(TaskHeaderChildren, KeepsManyChildrenInOrder) {
  Value::Array children;
  Strings built;
  for (int index = 0; index < 2000; ++index) {
    const std::string id = std::to_string(index);
    const TaskCase task = TaskCase().give(0, Value(id), '"' + id + '"');
    children.push_back(task.json());
    built.push_back(task.expected().node);
  }
  const Outcome outcome =
      buildWith(headerBuilder(), Value(Value::Object{{"children", std::move(children)}}));
  EXPECT_EQ(outcome.node, exportedLine(R"("")", built));
}

}  // namespace
}  // namespace tessel::build::json::widgets
