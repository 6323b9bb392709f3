#include <gtest/gtest.h>

#include <string>

#include "support/rows.hpp"

namespace tessel::build::json::controls {
namespace {

using test_support::expectClaims;
using test_support::expectRows;
using test_support::kDump;
using test_support::Row;

const std::string kBuilder = "StateButtonBuilderImpl";

TEST(StateButtonBuilder, SetsItsFieldsInReadingOrder) {
  expectRows(
      kBuilder,
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
                     "Set the defaultValueLinkedVariable property"}),
       Row("without a context nothing is read, not even the code")
           .object(R"({"className":"StateButtonControlNode","text":"x = 1"})")
           .asked("Checking if can build StateButton")
           .node(R"({"class":"document::gxzero::StateButtonNode",
               "position":{"class":"document::gxzero::LumoControlPosition"},
               "stateButtonData":{"class":"lumocode::contentmodel::gxzero::StateButtonData"}})")
           .records({"Starting to build a StateButton using the incoming JSON below", kDump}),
       Row("0 is no flag")
           .data(R"({"defaultValue":0})")
           .error("invalid conversion: double to bool")
           .records({"Found the defaultValue property"})});
}

TEST(StateButtonBuilder, GoesByItsClassNameAndLooksAtNoContext) {
  expectClaims(kBuilder,
               {R"({"className":"StateButtonControlNode","context":7})",
                R"({"className":"StateButtonControlNode","context":{"type":"checkBox"}})"},
               {R"({"className":"LumoControlNode","context":{"type":"stateButton"}})"});
}

}  // namespace
}  // namespace tessel::build::json::controls
