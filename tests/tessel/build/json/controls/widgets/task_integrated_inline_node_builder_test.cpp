#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <string>

#include "document/gxzero.hpp"
#include "support/allocation_count.hpp"
#include "support/json.hpp"
#include "support/rows.hpp"
#include "widgets/task_builders.hpp"

namespace tessel::build::json::widgets {
namespace {

using document::gxzero::LumoAppIntegratedInlineNode;
using test_support::expectRows;
using test_support::json;
using test_support::Row;

const std::string kBuilder = "LumoTaskIntegratedInlineNodeBuilderImpl";

TEST(TaskInlineBuilder, SetsItsFieldsInReadingOrder) {
  expectRows(
      kBuilder,
      {Row("every key")
           .object(R"({"className":"LumoAppIntegratedInlineNode","instanceId":"i","taskID":"t",
               "appIdentifier":"a","view":"v","collapsed":"true","appVariables":"{\"a\":[1]}",
               "appVariablesUserMap":"um","executionModel":"e","appState":"s","autorun":"r",
               "text":"Größe \ud83d\ude80","numOfCodeLines":12.9})")
           .asked("Checking if can build LumoAppIntegratedInline")
           .node(R"({"class":"document::gxzero::LumoAppIntegratedInlineNode","id":"i",
               "lumoTaskData":{"class":"lumocode::contentmodel::gxzero::LumoTaskData",
               "taskId":"t","appIdentifier":"a","view":"v","collapsed":"true",
               "appVariables":"{\"a\":[1]}","appVariablesUserMap":"um","executionModel":"e",
               "appState":"s","autoRun":"r","text":"Größe \ud83d\ude80","numCodeLines":12}})")
           .records({"Starting to build a LumoAppIntegratedNode", "Setting the instanceId property",
                     "Setting the taskID property", "Setting the appIdentifier property",
                     "Setting the view property", "Setting the collapsed property",
                     "Setting the appVariables property",
                     "Setting the appVariablesUserMap property",
                     "Setting the executionModel property", "Setting the appState property",
                     "Setting the autorun property", "Setting the text property",
                     "Setting the numOfCodeLines property",
                     "Finished building a LumoAppIntegratedNode"}),
       Row("no key: the id and the data are empty; other spellings are no keys")
           .object(R"({"className":"LumoAppIntegratedInlineNode","instanceID":1,"taskId":1,
               "autoRun":1,"numCodeLines":"","context":{"data":{"text":1}}})")
           .asked("Checking if can build LumoAppIntegratedInline")
           .node(R"({"class":"document::gxzero::LumoAppIntegratedInlineNode","id":"",
               "lumoTaskData":{"class":"lumocode::contentmodel::gxzero::LumoTaskData",
               "taskId":"","appIdentifier":"","view":"","collapsed":"","appVariables":"",
               "appVariablesUserMap":"","executionModel":"","appState":"","autoRun":"","text":"",
               "numCodeLines":0}})")
           .records({"Starting to build a LumoAppIntegratedNode",
                     "Finished building a LumoAppIntegratedNode"}),
       Row("a flag is no text; the first of two wrong keys is told, and no data is set")
           .object(R"({"instanceId":"i","collapsed":true,"numOfCodeLines":"12"})")
           .node(R"({"class":"document::gxzero::LumoAppIntegratedInlineNode","id":"i"})")
           .error("invalid conversion: bool to string")
           .records({"Starting to build a LumoAppIntegratedNode", "Setting the instanceId property",
                     "Setting the collapsed property"})});
}

TEST(TaskInlineBuilder, LineCountIsTruncatedToThirtyTwoBitsAndCutToSixteen) {
  using Limits = std::numeric_limits<double>;
  struct Conversion {
    double number;
    unsigned short stored;
  };
  const Conversion rows[] = {{3.7, 3},           {-1.9, 65535},           {70000, 4464},
                             {2147483649, 0},    {-2147483647.9, 1},      {4294967297, 0},
                             {Limits::max(), 0}, {Limits::quiet_NaN(), 0}};
  for (const Conversion& row : rows) {
    SCOPED_TRACE(row.number);
    const Model model = Model::create();
    const Node node = LumoTaskIntegratedInlineNodeBuilderImpl().build(
        model, Value::Object{{"numOfCodeLines", row.number}});
    const auto* impl = dynamic_cast<const LumoAppIntegratedInlineNode::Impl*>(node.get());
    ASSERT_NE(impl, nullptr);
    EXPECT_EQ(impl->getLumoTaskData().getNumCodeLines(), row.stored);
  }
}

/// Asks without memory, in a process that has not logged before, and ends the process.
[[noreturn]] void askWithoutMemory(const Value& value) {
  bool answer = false;
  {
    const test_support::AllocationFailure failure(0);
    answer = LumoTaskIntegratedInlineNodeBuilderImpl().canBuild(value);
  }
  std::exit(answer ? 0 : 1);
}

TEST(TaskInlineBuilderDeathTest, FirstRecordThatCannotBeMadeFailsNobody) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const Value value = json(R"({"className":"LumoAppIntegratedInlineNode"})");
  EXPECT_EXIT(askWithoutMemory(value), ::testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace tessel::build::json::widgets
