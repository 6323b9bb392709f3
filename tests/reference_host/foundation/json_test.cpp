#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "contract/samples.hpp"
#include "foundation/json.hpp"
#include "support/allocation_count.hpp"

namespace {

using contract::alternatives;
using contract::Sample;
using foundation::json::Null;
using foundation::json::traits;
using foundation::json::Undefined;
using foundation::json::Value;

using Array = Value::Array;
using Object = Value::Object;

/// The type names of all alternatives that a value answers to.
std::vector<std::string> heldAlternatives(const Value& value) {
  std::vector<std::string> names;
  const auto ask = [&names](const void* held, const char* name) {
    if (held != nullptr) names.emplace_back(name);
  };
  ask(value.get_if<Undefined>(), traits<Undefined>::name);
  ask(value.get_if<Null>(), traits<Null>::name);
  ask(value.get_if<bool>(), traits<bool>::name);
  ask(value.get_if<double>(), traits<double>::name);
  ask(value.get_if<std::string>(), traits<std::string>::name);
  ask(value.get_if<Array>(), traits<Array>::name);
  ask(value.get_if<Object>(), traits<Object>::name);
  ask(value.get_if<float>(), traits<float>::name);
  ask(value.get_if<std::int64_t>(), traits<std::int64_t>::name);
  ask(value.get_if<std::uint64_t>(), traits<std::uint64_t>::name);
  return names;
}

TEST(ValueTest, HoldsExactlyTheAlternativeItWasMadeOf) {
  for (const Sample& row : alternatives()) {
    SCOPED_TRACE(row.description);
    EXPECT_EQ(heldAlternatives(row.json), std::vector<std::string>{row.description});
  }
}

TEST(ValueTest, HandsOutItsContent) {
  constexpr auto kSmallest = std::numeric_limits<std::int64_t>::min();
  constexpr auto kLargest = std::numeric_limits<std::uint64_t>::max();
  Value text("abc");
  *text.get_if<std::string>() += "d";
  EXPECT_EQ(*text.get_if<std::string>(), "abcd");
  EXPECT_EQ(*Value(kSmallest).get_if<std::int64_t>(), kSmallest);
  EXPECT_EQ(*Value(kLargest).get_if<std::uint64_t>(), kLargest);
}

TEST(ValueTest, ValuesOfDifferentAlternativesAreNotEqual) {
  for (const Sample& left : alternatives()) {
    for (const Sample& right : alternatives()) {
      SCOPED_TRACE(left.description + " and " + right.description);
      EXPECT_EQ(left.json == right.json, &left == &right);
      EXPECT_EQ(left.json != right.json, &left != &right);
    }
  }
}

struct Comparison {
  const char* description;
  Value left;
  Value right;
  bool equal;
};

TEST(ValueTest, ComparesContent) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const Comparison rows[] = {
      {"flags", true, false, false},
      {"doubles", 1.0, 2.0, false},
      {"floats", 1.0F, 2.0F, false},
      {"signed integers", std::int64_t{1}, std::int64_t{2}, false},
      {"unsigned integers", std::uint64_t{1}, std::uint64_t{2}, false},
      {"texts", "1", std::string("2"), false},
      {"other key, same value", Object{{"a", 1.0}}, Object{{"b", 1.0}}, false},
      {"arrays of different length", Array{1.0}, Array{1.0, 1.0}, false},
      {"a difference one level down", Array{1.0, Array{"x"}}, Array{1.0, Array{"y"}}, false},
      {"objects of different size", Object{{"a", 1.0}}, Object{}, false},
      {"same key, other value", Object{{"a", 1.0}}, Object{{"a", 2.0}}, false},
      {"a nested object", Object{{"a", Object{{"b", Null()}}}},
       Object{{"a", Object{{"b", Null()}}}}, true},
      {"zeros of both signs", 0.0, -0.0, true},
      {"an array of what is no number", Array{nan}, Array{nan}, false},
  };
  for (const Comparison& row : rows) {
    SCOPED_TRACE(row.description);
    EXPECT_EQ(row.left == row.right, row.equal);
    EXPECT_EQ(row.right == row.left, row.equal);
  }
}

TEST(ValueTest, ReadingGivesUndefinedForWhatIsNotThere) {
  const Value object(Object{{"a", 1.0}, {"undefined", Undefined()}, {"", "empty key"}});
  for (const char* const key : {"a", "undefined", ""}) {
    EXPECT_TRUE(object.hasOwnProperty(key));
    EXPECT_EQ(&object[key], &object.get_if<Object>()->at(key));
    EXPECT_EQ(&object[std::string(key)], &object[key]);
  }
  for (const char* const key : {"A", "ab"}) {
    EXPECT_FALSE(object.hasOwnProperty(key));
    EXPECT_EQ(object[key], Value());
    EXPECT_EQ(object[std::string(key)], Value());
  }
  EXPECT_EQ(object.get_if<Object>()->size(), 3U);
  for (const Sample& row : alternatives()) {
    if (row.json.get_if<Object>() != nullptr) continue;
    SCOPED_TRACE(row.description);
    EXPECT_FALSE(row.json.hasOwnProperty("a"));
    EXPECT_EQ(row.json["a"], Value());
  }
}

TEST(ValueTest, AccessMakesMembersAndObjects) {
  Value object(Object{{"a", 1.0}});
  object["a"] = 2.0;
  EXPECT_EQ(object["b"], Value());
  object["c"]["d"] = "x";
  EXPECT_EQ(object, Value(Object{{"a", 2.0}, {"b", Undefined()}, {"c", Object{{"d", "x"}}}}));
}

TEST(ValueTest, AccessFailsOnEveryOtherAlternative) {
  for (const Sample& row : alternatives()) {
    if (row.description == "undefined" || row.description == "object") continue;
    SCOPED_TRACE(row.description);
    Value value = row.json;
    try {
      value["a"];
      ADD_FAILURE() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
      EXPECT_EQ(error.what(), "invalid conversion: " + row.description + " to object");
    }
    EXPECT_EQ(value, row.json);
  }
}

TEST(ValueTest, EveryAlternativeReplacesEveryOther) {
  for (const Sample& before : alternatives()) {
    for (const Sample& after : alternatives()) {
      SCOPED_TRACE(before.description + " replaced by " + after.description);
      Value copied = before.json;
      copied = after.json;
      EXPECT_EQ(copied, after.json);
      Value moved = before.json;
      moved = Value(after.json);
      EXPECT_EQ(moved, after.json);
    }
  }
}

const char* const kLongText = "a text too long for any short string buffer";

Value nestedSample() {
  return Object{{"a", Array{"x", Object{{"b", kLongText}}}}, {"c", Null()}};
}

TEST(ValueTest, ACopyIsIndependent) {
  const Value original = nestedSample();
  Value copy = original;
  EXPECT_EQ(copy, original);
  copy["a"].get_if<Array>()->at(1)["b"] = "changed";
  EXPECT_EQ(original, nestedSample());
  EXPECT_NE(copy, original);
}

TEST(ValueTest, TakesTheValueOfItsOwnDescendant) {
  const struct {
    const char* description;
    Value value;
    Value& (*descendant)(Value&);
  } rows[] = {
      {"itself", nestedSample(), [](Value& value) -> Value& { return value; }},
      {"an object in an array in an object", nestedSample(),
       [](Value& value) -> Value& { return value["a"].get_if<Array>()->at(1); }},
      {"an array in an array", Array{Array{1.0, 2.0}, 3.0},
       [](Value& value) -> Value& { return value.get_if<Array>()->front(); }},
      {"a text in an array", Array{kLongText},
       [](Value& value) -> Value& { return value.get_if<Array>()->front(); }},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.description);
    Value copied = row.value;
    const Value expected = row.descendant(copied);
    copied = row.descendant(copied);
    EXPECT_EQ(copied, expected);
    Value moved = row.value;
    moved = std::move(row.descendant(moved));
    EXPECT_EQ(moved, expected);
  }
}

TEST(ValueTest, ADescendantTakesTheValueOfItsAncestorByCopy) {
  Value value = nestedSample();
  value["c"] = value;
  EXPECT_EQ(value, Value(Object{{"a", nestedSample()["a"]}, {"c", nestedSample()}}));
}

TEST(ValueTest, AllocatesNoMoreThanItHolds) {
  const std::string key = "a key that is too long for any short string buffer";
  const Value object(Object{{key, 1.0}});
  EXPECT_EQ(test_support::allocationsOf([&] {
              EXPECT_TRUE(object.hasOwnProperty(key));
              EXPECT_NE(object[key].get_if<double>(), nullptr);
            }),
            0U);
  const Value text(kLongText);
  EXPECT_EQ(test_support::allocationsOf([&text] { const Value copy = text; }), 1U);
}

}  // namespace
