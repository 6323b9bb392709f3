#include <gtest/gtest.h>

#include <cstddef>
#include <iterator>
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
  const char* before;      ///< what compact JSON has in front of the inner value
  const char* after;       ///< and behind it
  std::size_t lineBreaks;  ///< of one level, pretty-printed
};

constexpr Shape kShapes[] = {
    {"arrays", inArray, kDeep, "[", "]", 2},
    {"objects", inObject, kDeep, R"({"key":)", "}", 2},
    {"arrays with siblings on both sides", amongElements, kDeep / 10, R"([["before"],)",
     R"(,{"after":1}])", 8},
    {"objects with siblings on both sides", amongMembers, kDeep / 10, R"({"a":[1,[]],"b":)",
     R"(,"c":"after"})", 7},
    {"arrays in objects", inArrayInObject, kDeep / 2, R"({"key":[)", "]}", 4},
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

TEST(DeepValueTest, AssigningDoesNotOverflowTheStack) {
  const Value value = nested(inArrayInObject, kDeep / 2, "innermost");
  Value target = nested(inArray, kDeep, 1.0);
  target = value;
  EXPECT_TRUE(target == value);
  innermost(target) = value;  // twice as deep
  EXPECT_FALSE(target == value);
}

std::string repeated(const std::string& text, std::size_t times) {
  std::string all;
  for (std::size_t time = 0; time < times; ++time) all += text;
  return all;
}

/// Jumps from one to the next: the text is large, and a test of its every character is slow.
std::size_t lineBreaksIn(const std::string& text) {
  std::size_t count = 0;
  for (std::size_t place = text.find('\n'); place != std::string::npos;
       place = text.find('\n', place + 1)) {
    ++count;
  }
  return count;
}

TEST(DeepValueTest, PrintingDoesNotOverflowTheStack) {
  for (const Shape& shape : kShapes) {
    SCOPED_TRACE(shape.description);
    const Value value = nested(shape.wrap, shape.depth, "innermost");
    std::string compact;
    reference_host::json::JsonWriter(compact).json(value);
    EXPECT_TRUE(compact == repeated(shape.before, shape.depth) + "\"innermost\"" +
                               repeated(shape.after, shape.depth));
    const std::string pretty = pretty_print(value);
    EXPECT_EQ(lineBreaksIn(pretty), shape.lineBreaks * shape.depth);
  }
}

TEST(DeepValueTest, ACopyThatFindsNoMemoryInTheDepthLeavesNothing) {
  const Value value = nested(inArrayInObject, kDeep / 2, "innermost");
  const std::size_t allocations =
      test_support::allocationsOf([&value] { const Value copy(value); });
  ASSERT_GT(allocations, kDeep);
  Value target("unchanged");
  for (const std::size_t successes : {allocations / 2, allocations - 1}) {
    test_support::LimitedMemory memory(successes, test_support::Refusal::kFromThenOn);
    EXPECT_TRUE(test_support::isOutOfMemory(memory.run([&] { target = value; })));
    EXPECT_EQ(target, Value("unchanged"));
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
