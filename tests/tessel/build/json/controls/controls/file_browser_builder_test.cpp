#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "control_kinds.hpp"
#include "controls/control_builders.hpp"
#include "support/control_fields.hpp"
#include "support/json.hpp"

namespace tessel::build::json::controls {

using test_support::buildWith;
using test_support::ControlKind;
using test_support::expectRows;
using test_support::FieldType;
using test_support::json;
using test_support::Outcome;
using test_support::outcomeOf;
using test_support::Recognition;
using test_support::Records;
using test_support::recordsOf;

ControlKind fileBrowserKind() {
  return {"FileBrowser",
          std::make_shared<FileBrowserBuilderImpl>(),
          Recognition::kClassName,
          "FileBrowserControlNode",
          "Checking if can build FileBrowser",
          "Starting to build a FileBrowser using the incoming JSON below",
          "FileBrowserNode",
          "fileBrowserData",
          "FileBrowserData",
          false,
          {test_support::requiredText("browserType", "folder", "Set the browserType property"),
           test_support::defaultValueField(FieldType::kText, "/data", R"("/data")")},
          {"browserType", "defaultValue"},
          {}};
}

namespace {

TEST(FileBrowserBuilder, IsMeantToHaveNoGuards) {
  const Records codeRecords = {"Found the code property", "Set the code property"};
  struct Row {
    const char* description;
    Value value;
    std::string record;
    Records records;
    std::string error = "invalid conversion: undefined to string";
  };
  const Row rows[] = {
      {"no context: the code was read all the same",
       json(R"({"className":"FileBrowserControlNode","text":"x = 1"})"), R"(,"code":"x = 1")",
       codeRecords},
      {"no data", json(R"({"className":"FileBrowserControlNode","text":"x = 1","context":{}})"),
       R"(,"code":"x = 1")", codeRecords},
      {"a context that is text",
       json(R"({"className":"FileBrowserControlNode","context":"x"})"),
       "",
       {},
       "invalid conversion: string to object"},
      {"data that is null",
       json(R"({"className":"FileBrowserControlNode","context":{"data":null}})"),
       "",
       {},
       "invalid conversion: null to object"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.description);
    EXPECT_EQ(buildWith(FileBrowserBuilderImpl(), row.value),
              outcomeOf(fileBrowserKind(), row.value, row.record, row.error, row.records));
  }
}

TEST(FileBrowserBuilder, FailsWhereAColourPickerBuilds) {
  const auto withoutData = [](const ControlKind& kind) {
    return json(R"({"className":")" + kind.word + R"(","context":{"other":{}}})");
  };
  const Outcome browser = buildWith(FileBrowserBuilderImpl(), withoutData(fileBrowserKind()));
  EXPECT_EQ(browser.error, "invalid conversion: undefined to string");
  const Outcome picker = buildWith(ColorPickerBuilderImpl(), withoutData(colorPickerKind()));
  EXPECT_EQ(picker.error, "");
  EXPECT_NE(picker.node, "");
}

// Neither "context" nor "data" has a record here.
TEST(FileBrowserBuilder, BuildsEveryRow) {
  expectRows(fileBrowserKind(),
             {
                 {"type and default value",
                  R"({"browserType":"file","defaultValue":"/data/a.txt"})",
                  R"(,"browserType":"file","defaultValue":"/data/a.txt")",
                  "",
                  {"Set the browserType property", "Found the defaultValue property",
                   "Set the defaultValue property"}},
                 {"no default value",
                  R"({"browserType":"file"})",
                  R"(,"browserType":"file")",
                  "",
                  {"Set the browserType property"}},
                 {"empty texts",
                  R"({"browserType":"","defaultValue":""})",
                  R"(,"browserType":"","defaultValue":"")",
                  "",
                  {"Set the browserType property", "Found the defaultValue property",
                   "Set the defaultValue property"}},
                 {"the common fields come first",
                  R"({"text":"Open","browserType":7})",
                  R"(,"label":"Open")",
                  "invalid conversion: double to string",
                  {"Found the label property", "Set the label property"}},
                 {"the type is required",
                  R"({"defaultValue":"/data"})",
                  "",
                  "invalid conversion: undefined to string",
                  {}},
                 {"a default value that is null: the type stays",
                  R"({"browserType":"file","defaultValue":null})",
                  R"(,"browserType":"file")",
                  "invalid conversion: null to string",
                  {"Set the browserType property", "Found the defaultValue property"}},
             });
}

TEST(FileBrowserBuilder, RefusesAListWithARecord) {
  bool answer = true;
  EXPECT_EQ(recordsOf([&] { answer = FileBrowserBuilderImpl().canBuild(json("[]")); }),
            (Records{"Checking if can build FileBrowser", "Incoming JSON was not an Object"}));
  EXPECT_FALSE(answer);
}

}  // namespace
}  // namespace tessel::build::json::controls
