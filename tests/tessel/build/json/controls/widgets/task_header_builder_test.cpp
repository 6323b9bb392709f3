#include <gmock/gmock.h>

#include <array>
#include <cstddef>
#include <memory>
#include <new>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "support/allocation_count.hpp"
#include "support/build_outcome.hpp"
#include "support/control_kind.hpp"
#include "support/json.hpp"
#include "support/records.hpp"
#include "support/scripted_node_builder.hpp"
#include "support/task_case.hpp"
#include "widgets/task_builders.hpp"

namespace tessel::build::json::widgets {
namespace {

using test_support::alternativesExcept;
using test_support::buildWith;
using test_support::exportedLine;
using test_support::json;
using test_support::Outcome;
using test_support::Records;
using test_support::recordsOf;
using test_support::ScriptedNodeBuilder;
using test_support::TaskCase;

const std::string kChecking = "Checking if can build LumoAppLineNode";
const std::string kStart = "Starting to build a LumoAppLineNode";
const std::string kAnchor = "Building the anchorId for the LumoAppLineNode";
const std::string kFinish = "Finished building the LumoAppLineNode";

/// The builder with the children's builder that it has in the product.
LumoTaskHeaderBuilderImpl headerBuilder() {
  return LumoTaskHeaderBuilderImpl(std::make_shared<LumoTaskIntegratedInlineNodeBuilderImpl>());
}

TEST(TaskHeaderRecognition, IsTheHostsClassNameTest) {
  struct Row {
    std::string description;
    Value value;
    bool expected;
  };
  std::vector<Row> rows = {
      {"its class name", json(R"({"className":"LumoAppLineNode"})"), true},
      {"its class name, with what a build would fail for",
       json(R"({"className":"LumoAppLineNode","children":7})"), true},
      {"the inline node's", json(R"({"className":"LumoAppIntegratedInlineNode"})"), false},
      {"with a character added", json(R"({"className":"LumoAppLineNodes"})"), false},
      {"first letter in lower case", json(R"({"className":"lumoAppLineNode"})"), false},
      {"space behind", json(R"({"className":"LumoAppLineNode "})"), false},
      {"no class name", json(R"({"children":[]})"), false},
      {"empty object", json("{}"), false},
      {"the class name itself", Value("LumoAppLineNode"), false},
  };
  for (const auto& other : alternativesExcept("object")) {
    rows.push_back({"no object: " + other.name, other.value, false});
  }
  for (const auto& other : alternativesExcept("string")) {
    rows.push_back({"class name that is no text: " + other.name,
                    Value(Value::Object{{"className", other.value}}), false});
  }
  const auto children = std::make_shared<ScriptedNodeBuilder>();
  const LumoTaskHeaderBuilderImpl builder(children);
  for (const Row& row : rows) {
    SCOPED_TRACE(row.description);
    const Value before = row.value;
    bool answer = !row.expected;
    EXPECT_EQ(recordsOf([&] { answer = builder.canBuild(row.value); }), Records{kChecking});
    EXPECT_EQ(answer, row.expected);
    EXPECT_EQ(row.value, before);
  }
  EXPECT_THAT(children->takeCalls(), ::testing::IsEmpty());
}

TEST(TaskHeaderBuild, SetsTheAnchorWhateverItIs) {
  struct Row {
    std::string description;
    Value anchorId;
    std::string exported;
  };
  std::vector<Row> rows = {
      {"gets the prefix", "a1", R"("M_a1")"},
      {"has the prefix", "M_a1", R"("M_a1")"},
      {"has the prefix twice", "M_M_a1", R"("M_M_a1")"},
      {"is the prefix", "M_", R"("M_")"},
      {"is half the prefix", "M", R"("M_M")"},
      {"has the prefix in another case", "m_a1", R"("M_m_a1")"},
      {"has the prefix further on", "xM_a1", R"("M_xM_a1")"},
      {"empty", "", R"("M_")"},
      {"not ASCII", "Größe \xF0\x9F\x9A\x80", "\"M_Größe \xF0\x9F\x9A\x80\""},
  };
  for (const auto& other : alternativesExcept("string")) {
    rows.push_back({"no text: " + other.name, other.value, R"("")"});
  }
  const LumoTaskHeaderBuilderImpl builder = headerBuilder();
  for (const Row& row : rows) {
    SCOPED_TRACE(row.description);
    const Value value(Value::Object{{"className", "LumoAppLineNode"},
                                    {"anchorId", row.anchorId},
                                    {"children", Value::Array()}});
    const std::string built = exportedLine(row.exported);
    EXPECT_EQ(buildWith(builder, value),
              (Outcome{built, "", "[" + built + "]", {kStart, kAnchor, kFinish}}));
  }
  const std::string unnamed = exportedLine(R"("")");
  EXPECT_EQ(buildWith(builder, json(R"({"children":[]})")),
            (Outcome{unnamed, "", "[" + unnamed + "]", {kStart, kAnchor, kFinish}}))
      << "no anchor";
}

TEST(TaskHeaderBuild, FailsWithoutAnArrayOfChildren) {
  struct Row {
    std::string description;
    Value value;
    std::string held;
    std::string anchor;
  };
  std::vector<Row> rows = {
      {"no children", json(R"({"className":"LumoAppLineNode","anchorId":"a"})"), "undefined",
       R"("M_a")"},
      {"children in another spelling", json(R"({"Children":[],"child":[]})"), "undefined", R"("")"},
      {"children further down", json(R"({"context":{"children":[]}})"), "undefined", R"("")"},
  };
  for (const auto& other : alternativesExcept("array")) {
    rows.push_back({"children of type " + other.name,
                    Value(Value::Object{{"anchorId", "a"}, {"children", other.value}}), other.name,
                    R"("M_a")"});
  }
  for (const auto& other : alternativesExcept("object")) {
    rows.push_back({"the header is no object: " + other.name, other.value, "undefined", R"("")"});
  }
  const auto children = std::make_shared<ScriptedNodeBuilder>();
  const LumoTaskHeaderBuilderImpl builder(children);
  for (const Row& row : rows) {
    SCOPED_TRACE(row.description);
    EXPECT_EQ(buildWith(builder, row.value),
              (Outcome{"",
                       "invalid conversion: " + row.held + " to array",
                       "[" + exportedLine(row.anchor) + "]",
                       {kStart, kAnchor}}));
  }
  EXPECT_THAT(children->takeCalls(), ::testing::IsEmpty());
}

TEST(TaskHeaderBuild, ReleasesItsHandlesWhereverMemoryEnds) {
  const Value value(Value::Object{
      {"anchorId", "a"},
      {"children", Value::Array{TaskCase().giveAll().json(), TaskCase().give(0).json()}}});
  const LumoTaskHeaderBuilderImpl builder = headerBuilder();
  builder.build(Model::create(), value);  // makes what the process makes once
  std::size_t allocations = 0;
  for (bool built = false; !built; ++allocations) {
    ASSERT_LT(allocations, 2000U);
    const Model model = Model::create();
    {
      const test_support::AllocationFailure failure(allocations);
      try {
        builder.build(model, value);
        built = true;
      } catch (const std::bad_alloc&) {
      }
    }
    EXPECT_EQ(model.get()->getHeldElementCount(), 0U) << allocations;
    // A child that was built but not appended is a root beside the line.
    EXPECT_LE(model.get()->getRoots().size(), built ? 1U : 2U) << allocations;
  }
  EXPECT_GT(allocations, 5U);
}

TEST(TaskHeaderBuild, ServesManyThreadsAtOnce) {
  const TaskCase task = TaskCase().giveAll();
  const Value value(
      Value::Object{{"className", "LumoAppLineNode"}, {"children", Value::Array{task.json()}}});
  const std::string built = exportedLine(R"("")", {task.expected().node});
  const LumoTaskHeaderBuilderImpl builder = headerBuilder();
  std::array<std::size_t, 4> good{};
  std::vector<std::thread> threads;
  for (std::size_t& count : good) {
    threads.emplace_back([&count, &value, &built, &builder] {
      for (int round = 0; round < 50; ++round) {
        const bool claimed = builder.canBuild(value);
        count += claimed && buildWith(builder, value).node == built ? 1U : 0U;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_THAT(good, ::testing::Each(50U));
}

TEST(TaskHeaderReference, IsSharedForLifeAndThenReleased) {
  auto children = std::make_shared<ScriptedNodeBuilder>();
  const std::weak_ptr<ScriptedNodeBuilder> observer = children;
  {
    const std::shared_ptr<NodeBuilder> injected = children;
    EXPECT_EQ(children.use_count(), 2);
    auto first = std::make_unique<LumoTaskHeaderBuilderImpl>(injected);
    EXPECT_EQ(children.use_count(), 3);
    const auto second = std::make_unique<LumoTaskHeaderBuilderImpl>(injected);
    EXPECT_EQ(children.use_count(), 4);
    first.reset();
    EXPECT_EQ(children.use_count(), 3);
  }
  EXPECT_EQ(children.use_count(), 1);

  auto builder = std::make_unique<LumoTaskHeaderBuilderImpl>(std::move(children));
  const Model model = Model::create();
  builder->build(model, json(R"({"children":["node a"]})"));
  EXPECT_EQ(observer.use_count(), 1) << "a build keeps no share of its own";
  EXPECT_THAT(observer.lock()->takeCalls(),
              ::testing::ElementsAre("canBuild node a", "build node a"));
  builder.reset();
  EXPECT_TRUE(observer.expired());
}

TEST(TaskHeaderReference, IsKeptWhenAnotherOneComesAlong) {
  const auto first = std::make_shared<ScriptedNodeBuilder>();
  const auto second = std::make_shared<ScriptedNodeBuilder>();
  std::shared_ptr<NodeBuilder> injected = first;
  const LumoTaskHeaderBuilderImpl builder(injected);
  injected = second;
  builder.build(Model::create(), json(R"({"children":["no"]})"));
  EXPECT_THAT(first->takeCalls(), ::testing::ElementsAre("canBuild no"));
  EXPECT_THAT(second->takeCalls(), ::testing::IsEmpty());
}

}  // namespace
}  // namespace tessel::build::json::widgets
