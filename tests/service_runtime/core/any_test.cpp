#include "cppmicroservices/Any.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "cppmicroservices/AnyMap.h"

namespace service_runtime_test {
namespace {

using cppmicroservices::Any;
using cppmicroservices::any_cast;
using cppmicroservices::AnyMap;
using cppmicroservices::BadAnyCastException;

struct Opaque {
  int value = 0;
};

struct TextRow {
  const char* description;
  Any value;
  const char* text;
  const char* json;
};

TEST(Any, TellsItsValueAsTextAndAsJson) {
  const TextRow rows[] = {
      {"text", std::string("a \"b\" \\ \n"), "a \"b\" \\ \n", "\"a \\\"b\\\" \\\\ \\u000a\""},
      {"literal", "words", "words", "\"words\""},
      {"true", true, "1", "true"},
      {"integer", -7, "-7", "-7"},
      {"number", 2.5, "2.5", "2.5"},
      {"texts", std::vector<std::string>{"a", "b"}, "", "[\"a\",\"b\"]"},
      {"mixed values", std::vector<Any>{1, std::string("x"), false}, "", "[1,\"x\",false]"},
      {"no values", std::vector<Any>{}, "", "[]"},
      {"map", AnyMap{{"b", 1}, {"a", AnyMap{{"c", true}}}}, "", "{\"a\": {\"c\": true}, \"b\": 1}"},
      {"empty map", AnyMap{}, "", "{}"},
      {"a type without text", Opaque{}, "", ""},
  };
  for (const TextRow& row : rows) {
    EXPECT_EQ(row.value.ToString(), row.text) << row.description;
    EXPECT_EQ(row.value.ToJSON(), row.json) << row.description;
  }
}

TEST(Any, EmptyHoldsNothing) {
  const Any empty;
  EXPECT_TRUE(empty.Empty());
  EXPECT_EQ(empty.Type(), typeid(void));
  EXPECT_EQ(empty.ToStringNoExcept(), "");
  EXPECT_EQ(empty.ToJSON(), "null");
  EXPECT_THROW(empty.ToString(), std::logic_error);
  EXPECT_EQ(any_cast<int>(&empty), nullptr);
}

TEST(Any, CastsToTheExactTypeOnly) {
  const Any value(7);
  EXPECT_EQ(any_cast<int>(value), 7);
  EXPECT_EQ(any_cast<long>(&value), nullptr);
  try {
    any_cast<bool>(value);
    ADD_FAILURE() << "no exception";
  } catch (const BadAnyCastException& error) {
    EXPECT_STREQ(error.what(), "bad any cast: the value is int, not bool");
  }
}

TEST(AnyMap, CaseOfNamesDoesNotMatter) {
  AnyMap values{{"Name", 1}};
  EXPECT_EQ(any_cast<int>(values.at("NAME")), 1);
  EXPECT_FALSE(values.emplace("name", 2).second);
  EXPECT_EQ(values.size(), 1U);
}

}  // namespace
}  // namespace service_runtime_test
