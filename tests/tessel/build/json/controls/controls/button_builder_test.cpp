#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <string>

#include "foundation/json.hpp"
#include "support/rows.hpp"

namespace tessel::build::json::controls {
namespace {

using foundation::json::Value;
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
       Row("a context that is text has no data; an id of another type is passed over")
           .object(R"({"context":"here","controlId":42})")
           .node(kEmptyNode)
           .records({kStart, kDump}),
       Row("the code is read without a context, by contract")
           .object(R"({"text":"x = 1"})")
           .node(R"({"class":"document::gxzero::ButtonNode",
               "position":{"class":"document::gxzero::LumoControlPosition"},
               "buttonData":{"class":"lumocode::contentmodel::gxzero::ButtonData",
               "code":"x = 1"}})")
           .records({kStart, kDump, "Found the code property", "Set the code property"}),
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
           .dataObject(R"({"executionModel":"all"})")
           .error("invalid conversion: double to string")
           .records({"Found the executionModel property", "Set the executionModel property",
                     "Found the label property"})});
}

TEST(ButtonBuilder, ColumnsConvertAsThePlatformDoes) {
  struct Conversion {
    const char* description;
    double column;
    const char* stored;
  };
  const Conversion rows[] = {
      {"truncated, not rounded", 3.9, "3"},
      {"a negative number truncates toward zero", -1.9, "18446744073709551615"},
      {"2^63", 9223372036854775808.0, "9223372036854775808"},
      {"2^64 fits no more", 18446744073709551616.0, "9223372036854775808"},
      {"the next double below -2^63 fits no more", -9223372036854777856.0, "9223372036854775808"},
      {"not a number", std::nan(""), "9223372036854775808"},
  };
  for (const Conversion& row : rows) {
    Row(row.description)
        .value(Value::Object{{"endColumn", row.column}})
        .node(R"({"class":"document::gxzero::ButtonNode",
            "position":{"class":"document::gxzero::LumoControlPosition","endColumn":)" +
              std::string(row.stored) + R"(},
            "buttonData":{"class":"lumocode::contentmodel::gxzero::ButtonData"}})")
        .records({kStart, kDump})
        .expectOf(kBuilder);
  }
}

}  // namespace
}  // namespace tessel::build::json::controls
