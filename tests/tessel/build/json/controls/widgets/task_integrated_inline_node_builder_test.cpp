#include <gmock/gmock.h>

#include <array>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "support/allocation_count.hpp"
#include "support/build_outcome.hpp"
#include "support/control_kind.hpp"
#include "support/json.hpp"
#include "support/records.hpp"
#include "support/task_case.hpp"
#include "widgets/task_builders.hpp"

namespace tessel::build::json::widgets {
namespace {

using test_support::alternatives;
using test_support::alternativesExcept;
using test_support::buildWith;
using test_support::json;
using test_support::Outcome;
using test_support::Records;
using test_support::recordsOf;
using test_support::TaskCase;
using test_support::TaskField;
using test_support::taskFields;

const LumoTaskIntegratedInlineNodeBuilderImpl kBuilder;

const std::string kChecking = "Checking if can build LumoAppIntegratedInline";

TEST(TaskInlineRecognition, GoesByTheExactClassName) {
  struct Row {
    const char* description;
    Value value;
    bool expected;
  };
  const Row rows[] = {
      {"its class name", json(R"({"className":"LumoAppIntegratedInlineNode"})"), true},
      {"other members make no difference",
       json(R"({"className":"LumoAppIntegratedInlineNode","context":7,"type":"slider"})"), true},
      {"the header line's", json(R"({"className":"LumoAppLineNode"})"), false},
      {"with a character added", json(R"({"className":"LumoAppIntegratedInlineNodes"})"), false},
      {"with a character missing", json(R"({"className":"LumoAppIntegratedInlineNod"})"), false},
      {"as the records have it", json(R"({"className":"LumoAppIntegratedInline"})"), false},
      {"first letter in lower case", json(R"({"className":"lumoAppIntegratedInlineNode"})"), false},
      {"space in front", json(R"({"className":" LumoAppIntegratedInlineNode"})"), false},
      {"space behind", json(R"({"className":"LumoAppIntegratedInlineNode "})"), false},
      {"zero character behind", json(R"({"className":"LumoAppIntegratedInlineNode\u0000"})"),
       false},
      {"empty", json(R"({"className":""})"), false},
      {"generic control", json(R"({"className":"LumoControlNode"})"), false},
      {"no class name", json(R"({"type":"LumoAppIntegratedInlineNode"})"), false},
      {"key in another case", json(R"({"classname":"LumoAppIntegratedInlineNode"})"), false},
      {"empty object", json("{}"), false},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.description);
    const Value before = row.value;
    bool answer = !row.expected;
    EXPECT_EQ(recordsOf([&] { answer = kBuilder.canBuild(row.value); }), Records{kChecking});
    EXPECT_EQ(answer, row.expected);
    EXPECT_EQ(row.value, before);
  }
}

TEST(TaskInlineRecognition, DeclinesWhatIsNoObjectWithARecord) {
  std::vector<test_support::Alternative> others = alternativesExcept("object");
  others.push_back(
      {"array of the object", json(R"([{"className":"LumoAppIntegratedInlineNode"}])")});
  others.push_back({"the class name itself", Value("LumoAppIntegratedInlineNode")});
  for (const auto& other : others) {
    SCOPED_TRACE(other.name);
    bool answer = true;
    EXPECT_EQ(recordsOf([&] { answer = kBuilder.canBuild(other.value); }),
              (Records{kChecking, "Incoming JSON was not an Object"}));
    EXPECT_FALSE(answer);
  }
}

TEST(TaskInlineRecognition, FailsForAClassNameThatIsNotText) {
  for (const auto& other : alternativesExcept("string")) {
    SCOPED_TRACE(other.name);
    const Value value(Value::Object{{"className", other.value}});
    std::string error;
    EXPECT_EQ(recordsOf([&] {
                try {
                  kBuilder.canBuild(value);
                } catch (const std::runtime_error& caught) {
                  error = caught.what();
                }
              }),
              Records{kChecking});
    EXPECT_EQ(error, "invalid conversion: " + other.name + " to string");
  }
}

/// Asks without memory, in a process that has not logged before, and ends the process.
[[noreturn]] void askWithoutMemory(const Value& value) {
  bool answer = false;
  {
    const test_support::AllocationFailure failure(0);
    answer = kBuilder.canBuild(value);
  }
  std::exit(answer ? 0 : 1);
}

TEST(TaskInlineRecognitionDeathTest, FirstRecordThatCannotBeMadeFailsNobody) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const Value value = json(R"({"className":"LumoAppIntegratedInlineNode"})");
  EXPECT_EXIT(askWithoutMemory(value), ::testing::ExitedWithCode(0), "");
}

TEST(TaskInlineBuild, ClassNameAloneGivesAnEmptyIdAndEmptyData) {
  EXPECT_EQ(buildWith(kBuilder, json(R"({"className":"LumoAppIntegratedInlineNode"})")),
            (Outcome{R"({"class":"document::gxzero::LumoAppIntegratedInlineNode","id":"",)"
                     R"("lumoTaskData":{"class":"lumocode::contentmodel::gxzero::LumoTaskData",)"
                     R"("taskId":"","appIdentifier":"","view":"","collapsed":"",)"
                     R"("appVariables":"","appVariablesUserMap":"","executionModel":"",)"
                     R"("appState":"","autoRun":"","text":"","numCodeLines":0}})",
                     "",
                     R"([{"class":"document::gxzero::LumoAppIntegratedInlineNode","id":"",)"
                     R"("lumoTaskData":{"class":"lumocode::contentmodel::gxzero::LumoTaskData",)"
                     R"("taskId":"","appIdentifier":"","view":"","collapsed":"",)"
                     R"("appVariables":"","appVariablesUserMap":"","executionModel":"",)"
                     R"("appState":"","autoRun":"","text":"","numCodeLines":0}}])",
                     {"Starting to build a LumoAppIntegratedNode",
                      "Finished building a LumoAppIntegratedNode"}}));
}

TEST(TaskInlineBuild, EveryKeyGoesToItsOwnProperty) {
  EXPECT_EQ(
      buildWith(kBuilder, json(R"({"className":"LumoAppIntegratedInlineNode",
        "instanceId":"i","taskID":"t","appIdentifier":"a","view":"v","collapsed":"c",
        "appVariables":"av","appVariablesUserMap":"um","executionModel":"e","appState":"s",
        "autorun":"r","text":"x","numOfCodeLines":3})")),
      (Outcome{
          R"({"class":"document::gxzero::LumoAppIntegratedInlineNode","id":"i",)"
          R"("lumoTaskData":{"class":"lumocode::contentmodel::gxzero::LumoTaskData",)"
          R"("taskId":"t","appIdentifier":"a","view":"v","collapsed":"c",)"
          R"("appVariables":"av","appVariablesUserMap":"um","executionModel":"e",)"
          R"("appState":"s","autoRun":"r","text":"x","numCodeLines":3}})",
          "",
          R"([{"class":"document::gxzero::LumoAppIntegratedInlineNode","id":"i",)"
          R"("lumoTaskData":{"class":"lumocode::contentmodel::gxzero::LumoTaskData",)"
          R"("taskId":"t","appIdentifier":"a","view":"v","collapsed":"c",)"
          R"("appVariables":"av","appVariablesUserMap":"um","executionModel":"e",)"
          R"("appState":"s","autoRun":"r","text":"x","numCodeLines":3}}])",
          {"Starting to build a LumoAppIntegratedNode", "Setting the instanceId property",
           "Setting the taskID property", "Setting the appIdentifier property",
           "Setting the view property", "Setting the collapsed property",
           "Setting the appVariables property", "Setting the appVariablesUserMap property",
           "Setting the executionModel property", "Setting the appState property",
           "Setting the autorun property", "Setting the text property",
           "Setting the numOfCodeLines property", "Finished building a LumoAppIntegratedNode"}}));
}

TEST(TaskInlineBuild, EachKeyAloneAndEachKeyMissing) {
  for (std::size_t field = 0; field < taskFields().size(); ++field) {
    SCOPED_TRACE(taskFields()[field].key);
    const TaskCase alone = TaskCase().give(field);
    EXPECT_EQ(buildWith(kBuilder, alone.json()), alone.expected());
    const TaskCase missing = TaskCase().giveAll().remove(field);
    EXPECT_EQ(buildWith(kBuilder, missing.json()), missing.expected());
  }
}

TEST(TaskInlineBuild, AnotherTypeFailsWhereTheKeyIsRead) {
  for (std::size_t field = 0; field < taskFields().size(); ++field) {
    SCOPED_TRACE(taskFields()[field].key);
    const auto others = alternativesExcept(taskFields()[field].typeName);
    ASSERT_EQ(others.size(), 9U);
    for (const auto& other : others) {
      SCOPED_TRACE(other.name);
      const TaskCase alone = TaskCase().giveOther(field, other);
      EXPECT_EQ(buildWith(kBuilder, alone.json()), alone.expected());
      const TaskCase amongAll = TaskCase().giveAll().giveOther(field, other);
      EXPECT_EQ(buildWith(kBuilder, amongAll.json()), amongAll.expected());
    }
  }
}

TEST(TaskInlineBuild, TheFirstOfTwoWrongKeysIsTold) {
  const TaskCase both =
      TaskCase().giveOther(4, {"bool", Value(true)}).giveOther(11, {"string", Value("12")});
  const Outcome expected = {
      "",
      "invalid conversion: bool to string",
      R"([{"class":"document::gxzero::LumoAppIntegratedInlineNode","id":""}])",
      {"Starting to build a LumoAppIntegratedNode", "Setting the collapsed property"}};
  EXPECT_EQ(buildWith(kBuilder, both.json()), expected);
}

TEST(TaskInlineBuild, TextIsPassedThrough) {
  struct Row {
    const char* description;
    std::string text;
    std::string exported;
  };
  const Row rows[] = {
      {"empty", "", R"("")"},
      {"the word true is text", "true", R"("true")"},
      {"a number is text", "12", R"("12")"},
      {"JSON is text", R"({"a":[1]})", R"("{\"a\":[1]}")"},
      {"white space is kept", " a\n", R"(" a\n")"},
      {"umlauts", "Größe", R"("Größe")"},
      {"beyond the basic plane", "\xF0\x9F\x9A\x80", "\"\xF0\x9F\x9A\x80\""},
      {"a zero character", std::string("a\0b", 3), R"("a\u0000b")"},
      {"long", std::string(100000, 'x'), '"' + std::string(100000, 'x') + '"'},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.description);
    for (std::size_t field = 0; field + 1 < taskFields().size(); ++field) {
      SCOPED_TRACE(taskFields()[field].key);
      const TaskCase task = TaskCase().give(field, Value(row.text), row.exported);
      EXPECT_EQ(buildWith(kBuilder, task.json()), task.expected());
    }
  }
}

TEST(TaskInlineBuild, TextIsStoredAsUtf16) {
  const Model model = Model::create();
  const Node node = kBuilder.build(
      model, json(R"({"instanceId":"é","text":"Größe \uD83D\uDE80","numOfCodeLines":2})"));
  const auto* const impl =
      dynamic_cast<const document::gxzero::LumoAppIntegratedInlineNode::Impl*>(node.get());
  ASSERT_NE(impl, nullptr);
  EXPECT_EQ(impl->getId(), u"\u00E9");
  EXPECT_EQ(impl->getLumoTaskData().getText(), u"Gr\u00F6\u00DFe \U0001F680");
  EXPECT_EQ(impl->getLumoTaskData().getNumCodeLines(), 2);
}

TEST(TaskInlineBuild, LineCountIsTruncatedToThirtyTwoBitsAndCutToSixteen) {
  using Limits = std::numeric_limits<double>;
  struct Row {
    double number;
    const char* exported;
  };
  const Row rows[] = {
      {0, "0"},
      {-0.0, "0"},
      {0.999, "0"},
      {-0.999, "0"},
      {Limits::denorm_min(), "0"},
      {3.7, "3"},
      {12.9, "12"},
      {-1, "65535"},
      {-1.9, "65535"},
      {-2, "65534"},
      {32768, "32768"},
      {65535, "65535"},
      {65535.9, "65535"},
      {65536, "0"},
      {65537, "1"},
      {70000, "4464"},
      {-65535, "1"},
      {-65536, "0"},
      {-70000, "61072"},
      {2147418113, "1"},
      {2147483646, "65534"},
      {2147483647, "65535"},
      {2147483647.5, "65535"},
      {2147483648, "0"},
      {2147483649, "0"},
      {-2147483647, "1"},
      {-2147483647.9, "1"},
      {-2147483648, "0"},
      {-2147483648.5, "0"},
      {-2147483649, "0"},
      {-2147483650, "0"},
      {4294967297, "0"},
      {1e10, "0"},
      {-1e10, "0"},
      {1e20, "0"},
      {-1e20, "0"},
      {Limits::max(), "0"},
      {Limits::lowest(), "0"},
      {Limits::infinity(), "0"},
      {-Limits::infinity(), "0"},
      {Limits::quiet_NaN(), "0"},
      {-Limits::quiet_NaN(), "0"},
  };
  const std::size_t lines = taskFields().size() - 1;
  for (const Row& row : rows) {
    SCOPED_TRACE(row.number);
    const TaskCase task = TaskCase().give(lines, Value(row.number), row.exported);
    // A value that is not a number differs from itself, so the case is compared by what it prints.
    const Model model = Model::create();
    Outcome outcome;
    outcome.records = recordsOf([&] {
      outcome.node = reference_host::exporting::toJson(kBuilder.build(model, task.json()));
    });
    outcome.roots = test_support::exportedRoots(model);
    EXPECT_EQ(outcome, task.expected());
  }
}

TEST(TaskInlineBuild, BuildsFromWhateverItIsGiven) {
  const Outcome nothingGiven = TaskCase().expected();
  struct Row {
    const char* description;
    Value value;
    Outcome expected;
  };
  const Row rows[] = {
      {"no class name", json(R"({"view":"its view"})"), TaskCase().give(3).expected()},
      {"another class name", json(R"({"className":"LumoAppLineNode","view":"its view"})"),
       TaskCase().give(3).expected()},
      {"a class name that is not text", json(R"({"className":7})"), nothingGiven},
      {"unknown keys", json(R"({"zoom":1,"children":[],"anchorId":"a"})"), nothingGiven},
      {"keys in another spelling",
       json(R"({"instanceID":1,"taskId":1,"autoRun":1,"numCodeLines":"","NumOfCodeLines":"",
                "numOfCodelines":"","Text":1,"label":1})"),
       nothingGiven},
      {"no key is looked for further down",
       json(R"({"context":{"data":{"text":1,"taskID":1},"text":1},"data":{"view":1}})"),
       nothingGiven},
      {"null has no members", Value(foundation::json::Null()), nothingGiven},
      {"an array has no members", json(R"(["instanceId"])"), nothingGiven},
      {"a text has no members", Value("instanceId"), nothingGiven},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.description);
    EXPECT_EQ(buildWith(kBuilder, row.value), row.expected);
  }
}

TEST(TaskInlineBuild, CreatesTheNodeAlone) {
  const Model model = Model::create();
  const Value value = TaskCase().giveAll().json();
  kBuilder.build(model, value);
  kBuilder.build(model, value);
  std::vector<std::u16string> classes;
  for (const auto& element : model.get()->getElements()) {
    classes.push_back(element->metaClass().get()->getQualifiedName());
  }
  const std::u16string node = u"document::gxzero::LumoAppIntegratedInlineNode";
  EXPECT_EQ(classes, (std::vector<std::u16string>{node, node}));
  EXPECT_EQ(model.get()->getRoots().size(), 2U);
  EXPECT_EQ(model.get()->getHeldElementCount(), 0U);
}

TEST(TaskInlineBuild, ReleasesItsHandlesWhereverMemoryEnds) {
  const Value value = TaskCase().giveAll().json();
  kBuilder.build(Model::create(), value);  // makes what the process makes once
  std::size_t allocations = 0;
  for (bool built = false; !built; ++allocations) {
    ASSERT_LT(allocations, 1000U);
    const Model model = Model::create();
    {
      const test_support::AllocationFailure failure(allocations);
      try {
        kBuilder.build(model, value);
        built = true;
      } catch (const std::bad_alloc&) {
      }
    }
    EXPECT_EQ(model.get()->getHeldElementCount(), 0U) << allocations;
    EXPECT_LE(model.get()->getRoots().size(), 1U) << allocations;
  }
  EXPECT_GT(allocations, 2U);
}

TEST(TaskInlineBuild, ServesManyThreadsAtOnce) {
  const TaskCase task = TaskCase().giveAll();
  const Value value = task.json();
  const Outcome expected = task.expected();
  std::array<std::size_t, 4> good{};
  std::vector<std::thread> threads;
  for (std::size_t& count : good) {
    threads.emplace_back([&count, &value, &expected] {
      for (int round = 0; round < 50; ++round) {
        const bool claimed = kBuilder.canBuild(value);
        count += claimed && buildWith(kBuilder, value) == expected ? 1U : 0U;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_THAT(good, ::testing::Each(50U));
}

}  // namespace
}  // namespace tessel::build::json::widgets
