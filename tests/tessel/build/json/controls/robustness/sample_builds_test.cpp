#include "sample_builds.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <set>
#include <utility>

#include "support/control_kind.hpp"
#include "support/task_case.hpp"
#include "tessel/build/json/controls/controls/control_kinds.hpp"
#include "widgets/task_builders.hpp"

namespace tessel::build::json::controls {

using foundation::json::Value;
using test_support::Alternative;
using test_support::alternatives;
using test_support::buildWith;
using test_support::ControlCase;
using test_support::ControlKind;
using test_support::Field;
using test_support::FieldType;
using test_support::Outcome;
using test_support::Records;
using test_support::recordsOf;
using test_support::TaskCase;
using widgets::LumoTaskHeaderBuilderImpl;
using widgets::LumoTaskIntegratedInlineNodeBuilderImpl;

namespace {

const Records kCheckingInline = {"Checking if can build LumoAppIntegratedInline"};

const Alternative& anotherType() {
  return alternatives()[1];  // null: no field takes it
}

/// All kinds, and the edit field once more.
std::vector<ControlKind> controlKinds() {
  std::vector<ControlKind> kinds = allKinds();
  kinds.push_back(numericEditFieldKind());
  kinds.back().name += "WithNumber";
  return kinds;
}

/// With every field, and texts that no short string buffer holds.
ControlCase fullControl(const ControlKind& kind) {
  ControlCase control(kind);
  control.giveAll();
  const std::vector<Field> fields = fieldsOf(kind);
  for (std::size_t index = 0; index < fields.size(); ++index) {
    const Field& field = fields[index];
    if (field.type != FieldType::kText || field.key == "valueType") continue;
    const std::string text = "a value of " + field.key + " in more than a few words";
    control.give(index, text, '"' + text + '"');
  }
  return control;
}

ControlCase failingControl(const ControlKind& kind) {
  return fullControl(kind).giveOther(fieldsOf(kind).size() - 1, anotherType());
}

TaskCase failingTask() {
  return TaskCase().giveAll().giveOther(test_support::taskFields().size() - 1, anotherType());
}

SampleBuild sampleOf(const ControlKind& kind, const ControlCase& control) {
  return {kind.name,          {kind.name, kind.builder},
          control.json(),     {kind.recognitionText},
          control.expected(), kind.recognition == test_support::Recognition::kHostClassName};
}

SampleBuild inlineSample(const TaskCase& task) {
  const std::string name = "TaskInlineNode";
  return {name,
          {name, std::make_shared<LumoTaskIntegratedInlineNodeBuilderImpl>()},
          task.json(),
          kCheckingInline,
          task.expected(),
          false};
}

/// A header with a child that is built, one that is declined, and a last one.
SampleBuild headerSample(const TaskCase& last) {
  const TaskCase first = TaskCase().giveAll();
  Value::Object members;
  members["className"] = "LumoAppLineNode";
  members["anchorId"] = "an anchor in more than a few words";
  members["children"] = Value::Array{first.json(), Value::Object{}, last.json()};

  Outcome expected = first.expected();
  const std::string firstNode = expected.node;
  Records records = {"Starting to build a LumoAppLineNode",
                     "Building the anchorId for the LumoAppLineNode"};
  for (const Records& more : {kCheckingInline, expected.records, kCheckingInline, kCheckingInline,
                              last.expected().records}) {
    records.insert(records.end(), more.begin(), more.end());
  }
  const std::string anchor = R"("M_an anchor in more than a few words")";
  expected = last.expected();
  if (expected.error.empty()) {
    records.emplace_back("Finished building the LumoAppLineNode");
    expected.node = test_support::exportedLine(anchor, {firstNode, expected.node});
    expected.roots = "[" + expected.node + "]";
  } else {
    expected.roots =
        "[" + test_support::exportedLine(anchor, {firstNode}) + "," + expected.roots.substr(1);
  }
  expected.records = records;

  const std::string name = "TaskHeader";
  return {name,
          {name, std::make_shared<LumoTaskHeaderBuilderImpl>(
                     std::make_shared<LumoTaskIntegratedInlineNodeBuilderImpl>())},
          Value(std::move(members)),
          {"Checking if can build LumoAppLineNode"},
          expected,
          true};
}

}  // namespace

std::vector<SampleBuild> successfulSamples() {
  std::vector<SampleBuild> samples;
  for (const ControlKind& kind : controlKinds()) {
    samples.push_back(sampleOf(kind, fullControl(kind)));
  }
  samples.push_back(inlineSample(TaskCase().giveAll()));
  samples.push_back(headerSample(TaskCase().give(0)));
  return samples;
}

std::vector<SampleBuild> failingSamples() {
  std::vector<SampleBuild> samples;
  for (const ControlKind& kind : controlKinds()) {
    samples.push_back(sampleOf(kind, failingControl(kind)));
  }
  samples.push_back(inlineSample(failingTask()));
  samples.push_back(headerSample(failingTask()));
  for (SampleBuild& sample : samples) sample.name += "Failing";
  return samples;
}

std::vector<SampleBuild> allSamples() {
  std::vector<SampleBuild> samples = successfulSamples();
  for (SampleBuild& failing : failingSamples()) samples.push_back(std::move(failing));
  return samples;
}

bool areAmong(const Records& records, const Records& all) {
  std::size_t next = 0;
  for (const std::string& record : records) {
    while (next < all.size() && all[next] != record) ++next;
    if (next == all.size()) return false;
    ++next;
  }
  return true;
}

namespace {

TEST(SampleBuilds, AreAllKindsAndComeOutAsSaid) {
  std::set<std::string> names;
  for (const SampleBuild& sample : allSamples()) {
    SCOPED_TRACE(sample.name);
    names.insert(sample.name);
    bool claimed = false;
    EXPECT_EQ(recordsOf([&] { claimed = sample.builder.canBuild(sample.json); }),
              sample.recognition);
    EXPECT_TRUE(claimed);
    EXPECT_EQ(buildWith(sample.builder, sample.json), sample.expected);
  }
  // Thirteen kinds, the edit field twice, each in two ways.
  EXPECT_EQ(names.size(), 28U);
  for (const SampleBuild& sample : failingSamples()) EXPECT_NE(sample.expected.error, "");
}

TEST(SampleBuilds, SomeOfTheRecordsAreToldFromOthers) {
  const Records all = {"a", "b", "a", "c"};
  EXPECT_TRUE(areAmong({}, all));
  EXPECT_TRUE(areAmong(all, all));
  EXPECT_TRUE(areAmong({"a", "a"}, all));
  EXPECT_TRUE(areAmong({"b", "c"}, all));
  EXPECT_FALSE(areAmong({"c", "a"}, all));
  EXPECT_FALSE(areAmong({"a", "a", "a"}, all));
  EXPECT_FALSE(areAmong({""}, all));
}

}  // namespace
}  // namespace tessel::build::json::controls
