#include <gtest/gtest.h>

#include <string>

#include "support/rows.hpp"

namespace tessel::build::json::controls {
namespace {

using test_support::expectRows;
using test_support::kDump;
using test_support::Row;

const std::string kBuilder = "ComboboxBuilderImpl";

TEST(ComboboxBuilder, SetsItsFieldsInReadingOrder) {
  expectRows(
      kBuilder,
      {Row("every key of its own")
           .object(R"({"className":"LumoControlNode","context":{"type":"comboBox","data":{
               "defaultValue":"2","linkedVariable":"v","itemLabels":["c","a","a"],
               "items":[{"label":"Z","value":"1"},{"value":"","label":"Größe"}]}}})")
           .asked("Checking if can build ComboBox")
           .node(R"({"class":"document::gxzero::ComboboxNode",
               "position":{"class":"document::gxzero::LumoControlPosition"},
               "comboBoxData":{"class":"lumocode::contentmodel::gxzero::ComboboxData",
               "defaultValue":"2","linkedVariable":"v","items":[
               {"class":"lumocode::contentmodel::gxzero::ComboboxItem","label":"Z","item":"1"},
               {"class":"lumocode::contentmodel::gxzero::ComboboxItem","label":"Größe","item":""}],
               "itemLabels":[
               {"class":"lumocode::contentmodel::gxzero::ComboboxItemLabel","label":"c"},
               {"class":"lumocode::contentmodel::gxzero::ComboboxItemLabel","label":"a"},
               {"class":"lumocode::contentmodel::gxzero::ComboboxItemLabel","label":"a"}]}})")
           .records({"Starting to build a comboBoxNode using the incoming JSON below", kDump,
                     "Found the context property", "Found the context.data property",
                     "Found the defaultValue property", "Set the defaultValue property",
                     "Found the linkedVariable property", "Set the linkedVariable property",
                     "Found the items property", "Got items ka array",
                     "{\n  \"label\": \"Z\",\n  \"value\": \"1\"\n}",
                     "{\n  \"label\": \"Größe\",\n  \"value\": \"\"\n}", "Set the items property",
                     "Found the item labels property", "Set the item labels property"}),
       Row("the other kinds' linked variable").data(R"({"defaultValueLinkedVariable":"v"})")});
}

TEST(ComboboxBuilder, AFailingEntryStaysInTheModelUnattached) {
  expectRows(
      kBuilder,
      {Row("an item whose value is missing; what is behind it is not read")
           .data(R"({"items":[{"label":"A","value":"x"},{"label":"B"},{"label":"C","value":"z"}],
               "itemLabels":["one"]})")
           .dataObject(R"({"items":[
               {"class":"lumocode::contentmodel::gxzero::ComboboxItem","label":"A","item":"x"}]})")
           .stray(R"({"class":"lumocode::contentmodel::gxzero::ComboboxItem","label":"B"})")
           .error("invalid conversion: undefined to string")
           .records({"Found the items property", "Got items ka array",
                     "{\n  \"label\": \"A\",\n  \"value\": \"x\"\n}", "{\n  \"label\": \"B\"\n}"}),
       Row("one item instead of a list, which is told only behind the second record")
           .data(R"({"items":{"label":"A","value":"x"}})")
           .error("invalid conversion: object to array")
           .records({"Found the items property", "Got items ka array"}),
       Row("a label that is a number")
           .data(R"({"itemLabels":["a",2,"c"]})")
           .dataObject(R"({"itemLabels":[
               {"class":"lumocode::contentmodel::gxzero::ComboboxItemLabel","label":"a"}]})")
           .stray(R"({"class":"lumocode::contentmodel::gxzero::ComboboxItemLabel"})")
           .error("invalid conversion: double to string")
           .records({"Found the item labels property"})});
}

}  // namespace
}  // namespace tessel::build::json::controls
