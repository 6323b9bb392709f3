// The check box and the state button.

#include <gtest/gtest.h>

#include <string>

#include "support/rows.hpp"

namespace tessel::build::json::controls {
namespace {

using test_support::expectRows;
using test_support::kDump;
using test_support::Row;

const std::string kCheckBox = "CheckBoxBuilderImpl";
const std::string kStateButton = "StateButtonBuilderImpl";

TEST(CheckBoxBuilder, SetsItsFieldsInReadingOrder) {
  expectRows(
      kCheckBox,
      {Row("every key")
           .object(R"({"className":"LumoControlNode","controlId":"c","startColumn":3,"endColumn":9,
               "text":"x = 1","context":{"type":"checkBox","data":{"executionModel":"all",
               "text":"Shown","defaultValue":true,"defaultValueLinkedVariable":"on"}}})")
           .asked("Checking if can build CheckBox")
           .node(R"({"class":"document::gxzero::CheckBoxNode","id":"c","position":{
               "class":"document::gxzero::LumoControlPosition","startColumn":3,"endColumn":9},
               "checkBoxData":{"class":"lumocode::contentmodel::gxzero::CheckboxData",
               "label":"Shown","code":"x = 1","executionModel":"all","defaultValue":true,
               "defaultLinkedVariable":"on"}})")
           .records({"Starting to build a CheckBox using the incoming JSON below", kDump,
                     "Found the context property", "Found the context.data property",
                     "Found the executionModel property", "Set the executionModel property",
                     "Found the label property", "Set the label property",
                     "Found the code property", "Set the code property",
                     "Found the defaultValue property", "Set the defaultValue property",
                     "Found the defaultValueLinkedVariable property",
                     "Set the defaultValueLinkedVariable property"}),
       Row("1 is no flag; the linked variable is not read")
           .data(R"({"defaultValue":1,"defaultValueLinkedVariable":"on"})")
           .error("invalid conversion: double to bool")
           .records({"Found the defaultValue property"}),
       Row("a linked variable that is a flag: the default value stays")
           .data(R"({"defaultValueLinkedVariable":false,"defaultValue":true})")
           .dataObject(R"({"defaultValue":true})")
           .error("invalid conversion: bool to string")
           .records({"Found the defaultValue property", "Set the defaultValue property",
                     "Found the defaultValueLinkedVariable property"}),
       Row("another kind's linked variable is no key").data(R"({"linkedVariable":"on"})")});
}

TEST(StateButtonBuilder, SetsItsFieldsInReadingOrder) {
  expectRows(kStateButton,
             {Row("every key of its own")
                  .object(R"({"className":"StateButtonControlNode","context":{"data":{
               "defaultValue":false,"defaultValueLinkedVariable":""}}})")
                  .asked("Checking if can build StateButton")
                  .node(R"({"class":"document::gxzero::StateButtonNode",
               "position":{"class":"document::gxzero::LumoControlPosition"},
               "stateButtonData":{"class":"lumocode::contentmodel::gxzero::StateButtonData",
               "defaultValue":false,"defaultLinkedVariable":""}})")
                  .records({"Starting to build a StateButton using the incoming JSON below", kDump,
                            "Found the context property", "Found the context.data property",
                            "Found the defaultValue property", "Set the defaultValue property",
                            "Found the defaultValueLinkedVariable property",
                            "Set the defaultValueLinkedVariable property"})});
}

}  // namespace
}  // namespace tessel::build::json::controls
