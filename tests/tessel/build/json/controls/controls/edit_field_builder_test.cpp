#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/rows.hpp"

namespace tessel::build::json::controls {
namespace {

using test_support::expectRows;
using test_support::kDump;
using test_support::Row;

const std::string kBuilder = "EditFieldBuilderImpl";

const std::vector<std::string> kWholeRecords = {
    "Found the valueType property", "Set the valueType property",
    // Irregular by contract: named after the element here, after the key there.
    "Found the defaultValueData property", "Set the defaultValue property"};
const std::vector<std::string> kUpToDefaultValue(kWholeRecords.begin(), kWholeRecords.begin() + 3);

TEST(EditFieldBuilder, AttachesANumberForTheValueTypeDouble) {
  expectRows(
      kBuilder,
      {Row("a number")
           .object(R"({"className":"LumoControlNode","context":{"type":"editField","data":{
               "valueType":"Double","defaultValue":2.5,"defaultValueLinkedVariable":"x"}}})")
           .asked("Checking if can build ComboBox")  // irregular by contract
           .node(R"({"class":"document::gxzero::EditFieldNode",
               "position":{"class":"document::gxzero::LumoControlPosition"},
               "editFieldData":{"class":"lumocode::contentmodel::gxzero::EditFieldData",
               "valueType":"Double","defaultValueData":{
               "class":"lumocode::contentmodel::gxzero::DoubleDefaultValueData",
               "defaultLinkedVariable":"x","defaultValue":2.5}}})")
           .records({"Starting to build a editFieldNode using the incoming JSON below", kDump,
                     "Found the context property", "Found the context.data property",
                     "Found the valueType property", "Set the valueType property",
                     "Found the defaultValueData property", "Set the defaultValue property"}),
       Row("text that spells a number leaves the value unset without an error")
           .data(R"({"valueType":"Double","defaultValue":"2.5","defaultValueLinkedVariable":"x"})")
           .dataObject(R"({"valueType":"Double","defaultValueData":{
               "class":"lumocode::contentmodel::gxzero::DoubleDefaultValueData",
               "defaultLinkedVariable":"x"}})")
           .records(kWholeRecords)});
}

TEST(EditFieldBuilder, AttachesATextForEveryOtherValueType) {
  expectRows(
      kBuilder,
      {Row("a value type that is nearly the word")
           .data(R"({"defaultValueLinkedVariable":"","valueType":"double","defaultValue":"abc"})")
           .dataObject(R"({"valueType":"double","defaultValueData":{
               "class":"lumocode::contentmodel::gxzero::StringDefaultValueData",
               "defaultLinkedVariable":"","defaultValue":"abc"}})")
           .records(kWholeRecords),
       Row("a number, which is no text")
           .data(R"({"defaultValueLinkedVariable":"","valueType":"Doubles","defaultValue":2.5})")
           .dataObject(R"({"valueType":"Doubles"})")
           .stray(R"({"class":"lumocode::contentmodel::gxzero::StringDefaultValueData"})")
           .error("invalid conversion: double to string")
           .records(kUpToDefaultValue),
       Row("without a value type")
           .data(R"({"defaultValue":"","defaultValueLinkedVariable":"v"})")
           .dataObject(R"({"defaultValueData":{
               "class":"lumocode::contentmodel::gxzero::StringDefaultValueData",
               "defaultLinkedVariable":"v","defaultValue":""}})")
           .records({"Found the defaultValueData property", "Set the defaultValue property"}),
       Row("a value type that is a number ends it after its found-record")
           .data(R"({"valueType":1,"defaultValue":"a"})")
           .error("invalid conversion: double to string")
           .records({"Found the valueType property"})});
}

TEST(EditFieldBuilder, TheLinkedVariableGoesWithTheDefaultValueByContract) {
  expectRows(
      kBuilder,
      {Row("alone it is not even read")
           .data(R"({"valueType":"Double","defaultValueLinkedVariable":7})")
           .dataObject(R"({"valueType":"Double"})")
           .records({"Found the valueType property", "Set the valueType property"}),
       Row("missing: the element holds its text and stays unattached")
           .data(R"({"valueType":"String","defaultValue":"abc"})")
           .dataObject(R"({"valueType":"String"})")
           .stray(R"({"class":"lumocode::contentmodel::gxzero::StringDefaultValueData",
               "defaultValue":"abc"})")
           .error("invalid conversion: undefined to string")
           .records(kUpToDefaultValue),
       Row("of another type: the element holds its number and stays unattached")
           .data(R"({"valueType":"Double","defaultValue":2.5,"defaultValueLinkedVariable":null})")
           .dataObject(R"({"valueType":"Double"})")
           .stray(R"({"class":"lumocode::contentmodel::gxzero::DoubleDefaultValueData",
               "defaultValue":2.5})")
           .error("invalid conversion: null to string")
           .records(kUpToDefaultValue)});
}

}  // namespace
}  // namespace tessel::build::json::controls
