#include <gtest/gtest.h>

#include <cstddef>
#include <iterator>
#include <random>
#include <string>
#include <utility>

#include "foundation/json.hpp"

namespace {

using foundation::json::Value;
using Array = Value::Array;
using Object = Value::Object;

constexpr std::size_t kDeep = 1'000'000;

/// Puts a value into one more container.
using Wrapper = Value (*)(Value inner);

Value inArray(Value inner) {
  Array elements;
  elements.push_back(std::move(inner));
  return elements;
}

Value inObject(Value inner) {
  Object members;
  members.emplace("key", std::move(inner));
  return members;
}

Value amongElements(Value inner) {
  Array elements;
  elements.emplace_back(Array{"before"});
  elements.push_back(std::move(inner));
  elements.emplace_back(Object{{"after", 1.0}});
  return elements;
}

Value amongMembers(Value inner) {
  Object members;
  members.emplace("a", Array{1.0, Array{}});
  members.emplace("b", std::move(inner));
  members.emplace("c", "after");
  return members;
}

Value inArrayInObject(Value inner) {
  return inObject(inArray(std::move(inner)));
}

Value nested(Wrapper wrap, std::size_t depth, Value innermost) {
  Value value = std::move(innermost);
  for (std::size_t level = 0; level < depth; ++level) value = wrap(std::move(value));
  return value;
}

struct Shape {
  const char* description;
  Wrapper wrap;
  std::size_t depth;
};

constexpr Shape kShapes[] = {
    {"arrays", inArray, kDeep},
    {"objects", inObject, kDeep},
    {"arrays with siblings on both sides", amongElements, kDeep / 10},
    {"objects with siblings on both sides", amongMembers, kDeep / 10},
    {"arrays in objects", inArrayInObject, kDeep / 10},
};

/// The text at the bottom of what `nested` made.
Value& innermost(Value& value) {
  Value* inner = &value;
  while (inner->get_if<std::string>() == nullptr) {
    if (auto* elements = inner->get_if<Array>()) {
      inner = elements->size() == 1 ? &elements->front() : &elements->at(1);
    } else {
      auto& members = *inner->get_if<Object>();
      inner = members.size() == 1 ? &members.at("key") : &members.at("b");
    }
  }
  return *inner;
}

TEST(DeepValueTest, CopyingComparingAndDestroyingDoNotOverflowTheStack) {
  for (const Shape& shape : kShapes) {
    SCOPED_TRACE(shape.description);
    const Value value = nested(shape.wrap, shape.depth, "innermost");
    Value copy = value;
    EXPECT_TRUE(copy == value);
    innermost(copy) = "other";
    EXPECT_FALSE(copy == value);
    const Value moved = std::move(copy);
    copy = 1.0;
    EXPECT_EQ(copy, Value(1.0));
    EXPECT_FALSE(moved == value);
  }
}

TEST(DeepValueTest, AssigningFromTheDepthReleasesTheRest) {
  Value value = nested(inArray, kDeep, "innermost");
  value = std::move(innermost(value));
  EXPECT_EQ(value, Value("innermost"));
}

/// A tree of random shape, built without recursion, at least as deep as asked.
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
        element = kShapes[random() % std::size(kShapes)].wrap(std::to_string(random()));
      } else if (random() % 2 == 0) {
        element = Array{};
      }
      if (asArray) {
        elements.push_back(std::move(element));
      } else {
        members.emplace(std::to_string(random()), std::move(element));
      }
    }
    value = asArray ? Value(std::move(elements)) : Value(std::move(members));
  }
  return value;
}

TEST(DeepValueTest, TreesOfAnyShapeAreCopiedAndDestroyed) {
  std::mt19937 random(20261121);
  for (const std::size_t depth :
       {1U, 2U, 3U, 10U, 999U, 1000U, 1001U, 1002U, 1003U, 1500U, 5000U}) {
    for (int round = 0; round < 5; ++round) {
      SCOPED_TRACE("depth " + std::to_string(depth) + ", round " + std::to_string(round));
      const Value value = randomTree(random, depth);
      const Value copy = value;
      EXPECT_TRUE(copy == value);
    }
  }
}

}  // namespace
