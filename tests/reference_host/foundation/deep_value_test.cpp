#include <gtest/gtest.h>

#include <cstddef>
#include <iterator>
#include <optional>
#include <random>
#include <string>
#include <utility>

#include "foundation/json.hpp"
#include "reference_host/json/text_writer.hpp"
#include "support/allocation_count.hpp"
#include "support/scale.hpp"

namespace {

using foundation::json::Value;
using Array = Value::Array;
using Object = Value::Object;

constexpr std::size_t kDeep = 1'000'000 / test_support::kScale;

/// Puts a value into two more containers.
using Wrapper = Value (*)(Value inner);

Value alone(Value inner) {
  Array elements;
  elements.push_back(std::move(inner));
  Object members;
  members.emplace("key", std::move(elements));
  return members;
}

Value amongSiblings(Value inner) {
  Array elements;
  elements.emplace_back(Array{"before"});
  elements.push_back(std::move(inner));
  elements.emplace_back(Object{{"after", 1.0}});
  Object members;
  members.emplace("a", Array{1.0, Array{}});
  members.emplace("key", std::move(elements));
  members.emplace("z", "after");
  return members;
}

Value nested(Wrapper wrap, std::size_t times, Value innermost) {
  Value value = std::move(innermost);
  for (std::size_t time = 0; time < times; ++time) value = wrap(std::move(value));
  return value;
}

struct Shape {
  const char* description;
  Wrapper wrap;
  std::size_t times;
  const char* before;  ///< what compact JSON has in front of the inner value
  const char* after;   ///< and behind it
};

constexpr Shape kShapes[] = {
    {"without siblings", alone, kDeep / 2, R"({"key":[)", "]}"},
    {"with siblings on both sides", amongSiblings, kDeep / 20, R"({"a":[1,[]],"key":[["before"],)",
     R"(,{"after":1}],"z":"after"})"},
};

/// The text at the bottom of what `nested` made.
Value& innermost(Value& value) {
  Value* inner = &value;
  while (inner->get_if<Object>() != nullptr) {
    auto& elements = *(*inner)["key"].get_if<Array>();
    inner = elements.size() == 1 ? &elements[0] : &elements[1];
  }
  return *inner;
}

TEST(DeepValueTest, CopyingComparingAndDestroyingDoNotOverflowTheStack) {
  for (const Shape& shape : kShapes) {
    SCOPED_TRACE(shape.description);
    const Value value = nested(shape.wrap, shape.times, "innermost");
    Value target = nested(alone, kDeep / 2, 1.0);
    target = value;
    EXPECT_TRUE(target == value);
    innermost(target) = value;  // twice as deep
    EXPECT_FALSE(target == value);
    target = std::move(innermost(target));
    EXPECT_EQ(target, Value("innermost"));
    std::optional<Value> copy = value;
    EXPECT_EQ(test_support::allocationsOf([&copy] { copy.reset(); }), 0U);
  }
}

std::string repeated(const std::string& text, std::size_t times) {
  std::string all;
  for (std::size_t time = 0; time < times; ++time) all += text;
  return all;
}

TEST(DeepValueTest, PrintingDoesNotOverflowTheStack) {
  for (const Shape& shape : kShapes) {
    SCOPED_TRACE(shape.description);
    const Value value = nested(shape.wrap, shape.times, "innermost");
    std::string compact;
    reference_host::json::JsonWriter(compact).json(value);
    EXPECT_TRUE(compact == repeated(shape.before, shape.times) + "\"innermost\"" +
                               repeated(shape.after, shape.times));
  }
}

/// A tree of random shape, built without recursion, of at least that depth.
Value randomTree(std::mt19937& random, std::size_t depth) {
  Value value("leaf");
  for (std::size_t level = 0; level < depth; ++level) {
    const std::size_t siblings = random() % 4;
    const std::size_t place = random() % (siblings + 1);
    const bool asArray = random() % 2 == 0;
    Array elements;
    Object members;
    for (std::size_t index = 0; index <= siblings; ++index) {
      Value element;
      if (index == place) {
        element = std::move(value);
      } else if (random() % 2 == 0) {
        element = kShapes[random() % std::size(kShapes)].wrap("leaf");
      } else if (random() % 2 == 0) {
        element = Array{};
      }
      if (asArray) {
        elements.push_back(std::move(element));
      } else {
        members.emplace(std::to_string(index), std::move(element));
      }
    }
    value = asArray ? Value(std::move(elements)) : Value(std::move(members));
  }
  return value;
}

TEST(DeepValueTest, TreesOfAnyShapeAreCopiedAndDestroyed) {
  std::mt19937 random(20261121);
  // Around where taking apart in place begins, and far below.
  for (const std::size_t depth : {1U, 2U, 3U, 10U, 99U, 100U, 101U, 102U, 1000U, 5000U}) {
    for (int round = 0; round < 5; ++round) {
      SCOPED_TRACE("depth " + std::to_string(depth) + ", round " + std::to_string(round));
      std::optional<Value> value = randomTree(random, depth);
      const Value copy = *value;
      EXPECT_TRUE(copy == *value);
      EXPECT_EQ(test_support::allocationsOf([&value] { value.reset(); }), 0U);
    }
  }
}

}  // namespace
