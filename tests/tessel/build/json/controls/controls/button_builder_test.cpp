#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "foundation/json.hpp"
#include "support/rows.hpp"

namespace tessel::build::json::controls {
namespace {

using foundation::json::Value;
using test_support::expectClaims;
using test_support::expectRows;
using test_support::kDump;
using test_support::Row;

const std::string kBuilder = "ButtonBuilderImpl";

const std::string kEmptyNode = R"({"class":"document::gxzero::ButtonNode",
    "position":{"class":"document::gxzero::LumoControlPosition"},
    "buttonData":{"class":"lumocode::contentmodel::gxzero::ButtonData"}})";
const std::string kStart = "Starting to build a Button using the incoming JSON below";

TEST(ButtonBuilder, SetsTheFieldsOfEveryControlInReadingOrder) {
  expectRows(
      kBuilder,
      {Row("every key")
           .object(R"({"className":"LumoControlNode","controlId":"größe","startColumn":3,
               "endColumn":12,"text":"run","context":{"type":"button",
               "data":{"executionModel":"section","text":"Run \ud83d\ude80"}}})")
           .asked("Checking if can build Button")
           .node(R"({"class":"document::gxzero::ButtonNode","id":"größe","position":{
               "class":"document::gxzero::LumoControlPosition","startColumn":3,"endColumn":12},
               "buttonData":{"class":"lumocode::contentmodel::gxzero::ButtonData",
               "label":"Run \ud83d\ude80","code":"run","executionModel":"section"}})")
           .records({kStart, kDump, "Found the executionModel property",
                     "Set the executionModel property", "Found the label property",
                     "Set the label property", "Found the code property", "Set the code property"}),
       Row("no key is named label or code")
           .object(R"({"label":"a","code":"b","context":{"data":{"label":"c","code":"d"}}})")
           .node(kEmptyNode)
           .records({kStart, kDump}),
       Row("a context that is text has no data")
           .object(R"({"context":"here"})")
           .node(kEmptyNode)
           .records({kStart, kDump}),
       Row("a column that is null fails before the id is read; the start column stays")
           .object(R"({"startColumn":2,"endColumn":null,"controlId":"b1"})")
           .node(R"({"class":"document::gxzero::ButtonNode","position":{
               "class":"document::gxzero::LumoControlPosition","startColumn":2}})")
           .error("invalid conversion: null to double")
           .records({kStart, kDump}),
       Row("an integer alternative is no double")
           .value(Value(Value::Object{{"startColumn", std::int64_t{3}}}))
           .node(R"({"class":"document::gxzero::ButtonNode",
               "position":{"class":"document::gxzero::LumoControlPosition"}})")
           .error("invalid conversion: int64 to double")
           .records({kStart, kDump}),
       Row("a numeric label: the execution model stays")
           .data(R"({"executionModel":"all","text":5})")
           .record(R"({"executionModel":"all"})")
           .error("invalid conversion: double to string")
           .records({"Found the executionModel property", "Set the executionModel property",
                     "Found the label property"})});
}

TEST(ButtonBuilder, ReadsTheCodeWithoutAContextByContract) {
  expectRows(kBuilder,
             {Row("code alone")
                  .object(R"({"text":"x = 1"})")
                  .node(R"({"class":"document::gxzero::ButtonNode",
                      "position":{"class":"document::gxzero::LumoControlPosition"},
                      "buttonData":{"class":"lumocode::contentmodel::gxzero::ButtonData",
                      "code":"x = 1"}})")
                  .records({kStart, kDump, "Found the code property", "Set the code property"})});
}

TEST(ButtonBuilder, PassesOverAnIdOfAnotherType) {
  for (const char* id : {"42", "true", "null", "{}", R"(["b1"])"}) {
    Row(id)
        .object(R"({"controlId":)" + std::string(id) + "}")
        .node(kEmptyNode)
        .records({kStart, kDump})
        .expectOf(kBuilder);
  }
}

TEST(ButtonBuilder, IsRecognisedByItsWordAsTypeAndAsClassName) {
  expectClaims(kBuilder,
               {R"({"className":"LumoControlNode","context":{"type":"button"}})",
                R"({"className":"button","context":{"type":"slider"}})"},
               {R"({"className":"Button"})",
                R"({"className":"ParagraphNode","context":{"type":"button"}})"});
}

}  // namespace
}  // namespace tessel::build::json::controls
