#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "control_kinds.hpp"
#include "controls/control_builders.hpp"
#include "support/control_fields.hpp"
#include "support/json.hpp"

namespace tessel::build::json::controls {

using test_support::ControlKind;
using test_support::controlWith;
using test_support::expectRows;
using test_support::Field;
using test_support::FieldType;
using test_support::json;
using test_support::Recognition;
using test_support::Records;

namespace {

/// The dump of an item whose members are the "label" and the "value".
std::string itemDump(const std::string& label, const std::string& value) {
  return "{\n  \"label\": " + label + ",\n  \"value\": " + value + "\n}";
}

/// An item as exported. Without its value while it is being made.
std::string item(const std::string& label, const std::string& value = "") {
  return R"({"class":"lumocode::contentmodel::gxzero::ComboboxItem","label":)" + label +
         (value.empty() ? "" : R"(,"item":)" + value) + "}";
}

const char* const kEmptyItem = R"({"class":"lumocode::contentmodel::gxzero::ComboboxItem"})";

std::string itemLabel(const std::string& label) {
  return R"({"class":"lumocode::contentmodel::gxzero::ComboboxItemLabel","label":)" + label + "}";
}

const char* const kEmptyItemLabel =
    R"({"class":"lumocode::contentmodel::gxzero::ComboboxItemLabel"})";

// Meant: the second one comes before the list is read, and in these words.
const Records kFoundItems = {"Found the items property", "Got items ka array"};

/// The records of a list of items: one dump each, and the last one unless the list fails.
Records itemRecords(const Records& dumps, bool succeeds = true) {
  Records records = kFoundItems;
  records.insert(records.end(), dumps.begin(), dumps.end());
  if (succeeds) records.emplace_back("Set the items property");
  return records;
}

std::vector<Field> ownFields() {
  return {
      test_support::defaultValueField(FieldType::kText, "b", R"("b")"),
      {"linkedVariable",
       FieldType::kText,
       "choice",
       "linkedVariable",
       R"("choice")",
       {"Found the linkedVariable property"},
       {"Set the linkedVariable property"}},
      {"items",
       FieldType::kList,
       json(R"([{"label":"One","value":"a"},{"label":"Two","value":"b"}])"),
       "items",
       "[" + item(R"("One")", R"("a")") + "," + item(R"("Two")", R"("b")") + "]",
       kFoundItems,
       {itemDump(R"("One")", R"("a")"), itemDump(R"("Two")", R"("b")"), "Set the items property"}},
      {"itemLabels",
       FieldType::kList,
       json(R"(["first","second","third"])"),
       "itemLabels",
       "[" + itemLabel(R"("first")") + "," + itemLabel(R"("second")") + "," +
           itemLabel(R"("third")") + "]",
       {"Found the item labels property"},
       {"Set the item labels property"}},
  };
}

}  // namespace

ControlKind comboBoxKind() {
  return {"ComboBox",
          std::make_shared<ComboboxBuilderImpl>(),
          Recognition::kTypeWord,
          "comboBox",
          "Checking if can build ComboBox",
          "Starting to build a comboBoxNode using the incoming JSON below",
          "ComboboxNode",
          "comboBoxData",
          "ComboboxData",
          true,
          ownFields(),
          {"defaultValue", "linkedVariable", "items", "itemLabels"},
          {"ComboboxItem", "ComboboxItem", "ComboboxItemLabel", "ComboboxItemLabel",
           "ComboboxItemLabel"}};
}

namespace {

TEST(ComboboxBuilder, KeepsItemsInOrder) {
  expectRows(comboBoxKind(),
             {
                 {"two items, each with a dump between the records of the list",
                  R"({"items":[{"label":"Z","value":"1"},{"value":"2","label":"A"}]})",
                  R"(,"items":[)" + item(R"("Z")", R"("1")") + "," + item(R"("A")", R"("2")") + "]",
                  "", itemRecords({itemDump(R"("Z")", R"("1")"), itemDump(R"("A")", R"("2")")})},
                 {"no items", R"({"items":[]})", "", "", itemRecords({})},
                 {"two items alike are two items",
                  R"({"items":[{"label":"A","value":"x"},{"label":"A","value":"x"}]})",
                  R"(,"items":[)" + item(R"("A")", R"("x")") + "," + item(R"("A")", R"("x")") + "]",
                  "", itemRecords({itemDump(R"("A")", R"("x")"), itemDump(R"("A")", R"("x")")})},
                 {"empty and non-ASCII texts",
                  R"({"items":[{"label":"","value":""},{"label":"Größe","value":"\ud83d\ude80"}]})",
                  R"(,"items":[)" + item(R"("")", R"("")") + "," +
                      item(R"("Größe")", "\"\xF0\x9F\x9A\x80\"") + "]",
                  "",
                  itemRecords({itemDump(R"("")", R"("")"),
                               itemDump(R"("Größe")", "\"\xF0\x9F\x9A\x80\"")})},
                 {"other members of an item are ignored and dumped",
                  R"({"items":[{"label":"A","value":"x","item":7}]})",
                  R"(,"items":[)" + item(R"("A")", R"("x")") + "]", "",
                  itemRecords({"{\n  \"item\": 7,\n  \"label\": \"A\",\n  \"value\": \"x\"\n}"})},
             });
}

TEST(ComboboxBuilder, WritesGotItemsKaArrayBeforeTheListIsRead) {
  expectRows(comboBoxKind(), {
                                 {"one item instead of a list",
                                  R"({"items":{"label":"A","value":"x"}})",
                                  "",
                                  "invalid conversion: object to array",
                                  {"Found the items property", "Got items ka array"}},
                                 {"null",
                                  R"({"items":null})",
                                  "",
                                  "invalid conversion: null to array",
                                  {"Found the items property", "Got items ka array"}},
                             });
}

TEST(ComboboxBuilder, AFailingItemStaysInTheModelUnattached) {
  const std::string attached = R"(,"items":[)" + item(R"("A")", R"("x")") + "]";
  const std::string dump = itemDump(R"("A")", R"("x")");
  expectRows(
      comboBoxKind(),
      {
          {"value that is a number: the label was set", R"({"items":[{"label":"A","value":1}]})",
           "", "invalid conversion: double to string",
           itemRecords({itemDump(R"("A")", "1")}, false), item(R"("A")")},
          {"label that is a number: nothing was set", R"({"items":[{"label":1,"value":"x"}]})", "",
           "invalid conversion: double to string", itemRecords({itemDump("1", R"("x")")}, false),
           kEmptyItem},
          {"no label", R"({"items":[{"value":"x"}]})", "",
           "invalid conversion: undefined to string",
           itemRecords({"{\n  \"value\": \"x\"\n}"}, false), kEmptyItem},
          {"no value", R"({"items":[{"label":"A"}]})", "",
           "invalid conversion: undefined to string",
           itemRecords({"{\n  \"label\": \"A\"\n}"}, false), item(R"("A")")},
          {"an item that is text", R"({"items":["A"]})", "",
           "invalid conversion: undefined to string", itemRecords({"\"A\""}, false), kEmptyItem},
          {"an item that is null", R"({"items":[null]})", "",
           "invalid conversion: undefined to string", itemRecords({"null"}, false), kEmptyItem},
          {"an item that is a list", R"({"items":[["A","x"]]})", "",
           "invalid conversion: undefined to string",
           itemRecords({"[\n  \"A\",\n  \"x\"\n]"}, false), kEmptyItem},
          {"the items before it stay in the list, those behind it are not read",
           R"({"items":[{"label":"A","value":"x"},{"label":"B"},{"label":"C","value":"z"}],
               "itemLabels":["one"]})",
           attached, "invalid conversion: undefined to string",
           itemRecords({dump, "{\n  \"label\": \"B\"\n}"}, false), item(R"("B")")},
      });
}

TEST(ComboboxBuilder, KeepsItemLabelsInOrderWithoutARecordEach) {
  expectRows(comboBoxKind(),
             {
                 {"three labels, and no items",
                  R"({"itemLabels":["c","a","b"]})",
                  R"(,"itemLabels":[)" + itemLabel(R"("c")") + "," + itemLabel(R"("a")") + "," +
                      itemLabel(R"("b")") + "]",
                  "",
                  {"Found the item labels property", "Set the item labels property"}},
                 {"no labels",
                  R"({"itemLabels":[]})",
                  "",
                  "",
                  {"Found the item labels property", "Set the item labels property"}},
                 {"two labels alike are two labels",
                  R"({"itemLabels":["a","a"]})",
                  R"(,"itemLabels":[)" + itemLabel(R"("a")") + "," + itemLabel(R"("a")") + "]",
                  "",
                  {"Found the item labels property", "Set the item labels property"}},
             });
}

TEST(ComboboxBuilder, AFailingItemLabelStaysInTheModelUnattached) {
  expectRows(comboBoxKind(), {
                                 {"a number behind a text: the text's label stays in the list",
                                  R"({"itemLabels":["a",2,"c"]})",
                                  R"(,"itemLabels":[)" + itemLabel(R"("a")") + "]",
                                  "invalid conversion: double to string",
                                  {"Found the item labels property"},
                                  kEmptyItemLabel},
                                 {"a label that is an object",
                                  R"({"itemLabels":[{"label":"a"}]})",
                                  "",
                                  "invalid conversion: object to string",
                                  {"Found the item labels property"},
                                  kEmptyItemLabel},
                                 {"text instead of a list creates none",
                                  R"({"itemLabels":"a"})",
                                  "",
                                  "invalid conversion: string to array",
                                  {"Found the item labels property"}},
                             });
}

TEST(ComboboxBuilder, ItemsAndItemLabelsAreNotMatched) {
  Records records = itemRecords({itemDump(R"("A")", R"("x")")});
  records.emplace_back("Found the item labels property");
  records.emplace_back("Set the item labels property");
  expectRows(comboBoxKind(), {{"one item, two labels",
                               R"({"itemLabels":["B","C"],"items":[{"label":"A","value":"x"}]})",
                               R"(,"items":[)" + item(R"("A")", R"("x")") + R"(],"itemLabels":[)" +
                                   itemLabel(R"("B")") + "," + itemLabel(R"("C")") + "]",
                               "", records}});
}

TEST(ComboboxBuilder, ItsDefaultValueIsText) {
  expectRows(comboBoxKind(),
             {
                 {"text that spells a number",
                  R"({"defaultValue":"2"})",
                  R"(,"defaultValue":"2")",
                  "",
                  {"Found the defaultValue property", "Set the defaultValue property"}},
                 {"a number",
                  R"({"defaultValue":2})",
                  "",
                  "invalid conversion: double to string",
                  {"Found the defaultValue property"}},
                 {"one that is no item",
                  R"({"defaultValue":"none","items":[]})",
                  R"(,"defaultValue":"none")",
                  "",
                  {"Found the defaultValue property", "Set the defaultValue property",
                   "Found the items property", "Got items ka array", "Set the items property"}},
             });
}

TEST(ComboboxBuilder, ItsLinkedVariableIsMeantToHaveAKeyOfItsOwn) {
  expectRows(comboBoxKind(),
             {
                 {"its key",
                  R"({"linkedVariable":"v"})",
                  R"(,"linkedVariable":"v")",
                  "",
                  {"Found the linkedVariable property", "Set the linkedVariable property"}},
                 {"the other kinds' key", R"({"defaultValueLinkedVariable":"v"})", "", "", {}},
             });
}

TEST(ComboboxBuilder, EachEntryHasTheRecordAsItsOwner) {
  const gx::zero::Model model = gx::zero::Model::create();
  const Node node = ComboboxBuilderImpl().build(
      model,
      controlWith(comboBoxKind(), R"({"items":[{"label":"A","value":"x"}],"itemLabels":["A"]})"));
  const auto& elements = model.get()->getElements();
  ASSERT_EQ(elements.size(), 5U);
  const gx::zero::ModelElement record(elements[2].get());
  EXPECT_EQ(record.get()->getOwner(), node);
  EXPECT_EQ(elements[3]->getOwner(), record);
  EXPECT_EQ(elements[4]->getOwner(), record);
}

}  // namespace
}  // namespace tessel::build::json::controls
