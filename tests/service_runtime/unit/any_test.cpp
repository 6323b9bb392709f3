#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "cppmicroservices/Any.h"
#include "cppmicroservices/AnyMap.h"

namespace service_runtime_test {
namespace {

using cppmicroservices::Any;
using cppmicroservices::any_cast;
using cppmicroservices::AnyMap;
using cppmicroservices::BadAnyCastException;
using cppmicroservices::ref_any_cast;

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
      {"texts", std::vector<std::string>{"a", "b"}, "[a,b]", "[\"a\",\"b\"]"},
      {"mixed values", std::vector<Any>{1, std::string("x"), false}, "[1,x,0]", "[1,\"x\",false]"},
      {"no values", std::vector<Any>{}, "[]", "[]"},
      {"map", AnyMap{{"b", 1}, {"a", AnyMap{{"c", true}}}}, "{a : {c : 1}, b : 1}",
       "{\"a\": {\"c\": true}, \"b\": 1}"},
      {"empty map", AnyMap{}, "{}", "{}"},
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
  EXPECT_TRUE(empty == Any());
  EXPECT_FALSE(empty == Any(1));
}

TEST(Any, CastsToTheExactTypeOnly) {
  Any value(7);
  EXPECT_EQ(any_cast<int>(value), 7);
  EXPECT_EQ(any_cast<long>(&value), nullptr);
  ref_any_cast<int>(value) = 8;
  EXPECT_EQ(*any_cast<int>(&value), 8);
  try {
    any_cast<bool>(value);
    ADD_FAILURE() << "no exception";
  } catch (const BadAnyCastException& error) {
    EXPECT_STREQ(error.what(), "bad any cast: the value is int, not bool");
  }
}

TEST(Any, CopiesAndCompares) {
  const auto counted = std::make_shared<int>(1);
  Any original(counted);
  Any copy = original;
  EXPECT_EQ(counted.use_count(), 3);
  EXPECT_TRUE(copy == original);
  Any taken = std::move(copy);
  EXPECT_EQ(counted.use_count(), 3);
  taken = std::string("x");
  EXPECT_EQ(counted.use_count(), 2);
  EXPECT_TRUE(taken != original);
  EXPECT_TRUE(Any(1) != Any(1L));
  EXPECT_TRUE(Any(std::vector<Any>{1, AnyMap{{"a", 2}}}) ==
              Any(std::vector<Any>{1, AnyMap{{"a", 2}}}));
  const Any opaque(Opaque{});
  EXPECT_TRUE(opaque == opaque);
  EXPECT_FALSE(opaque == Any(Opaque{}));
}

TEST(AnyMap, KindSaysWhetherCaseMatters) {
  AnyMap folded(AnyMap::UNORDERED_MAP_CASEINSENSITIVE_KEYS, {{"Name", 1}});
  EXPECT_EQ(any_cast<int>(folded.at("NAME")), 1);
  EXPECT_FALSE(folded.emplace("name", 2).second);
  EXPECT_EQ(folded.size(), 1U);

  AnyMap exact{{"Name", 1}};
  EXPECT_EQ(exact.GetType(), AnyMap::UNORDERED_MAP);
  EXPECT_EQ(exact.count("NAME"), 0U);
  EXPECT_TRUE(exact.emplace("name", 2).second);
  EXPECT_THROW(exact.at("NAME"), std::out_of_range);
  EXPECT_TRUE(exact == AnyMap(AnyMap::ordered_any_map{{"name", 2}, {"Name", 1}}));
  EXPECT_TRUE(exact != folded);
}

}  // namespace
}  // namespace service_runtime_test
