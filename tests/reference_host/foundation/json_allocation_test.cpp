#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <string>
#include <utility>

#include "foundation/json.hpp"
#include "support/allocation_count.hpp"
#include "support/scale.hpp"

namespace {

using foundation::json::Value;
using Array = Value::Array;
using Object = Value::Object;
using test_support::allocationsOf;

Value nested(std::size_t depth) {
  Value value("a text too long for any short string buffer");
  for (std::size_t level = 0; level < depth; ++level) {
    if (level % 2 == 0) {
      Array elements;
      elements.emplace_back(Array{1.0});
      elements.push_back(std::move(value));
      elements.emplace_back("after");
      value = std::move(elements);
    } else {
      Object members;
      members.emplace("a", Object{{"x", 1.0}});
      members.emplace("b", std::move(value));
      value = std::move(members);
    }
  }
  return value;
}

TEST(ValueAllocationTest, DestroyingAllocatesNothing) {
  for (const std::size_t depth :
       {std::size_t{0}, std::size_t{1}, std::size_t{10}, std::size_t{1000}, std::size_t{1001},
        1'000'000 / test_support::kScale}) {
    SCOPED_TRACE(depth);
    std::optional<Value> value = nested(depth);
    EXPECT_EQ(allocationsOf([&value] { value.reset(); }), 0U);
  }
}

TEST(ValueAllocationTest, ReadingAMemberByALongTextKeyAllocatesNothing) {
  const std::string key = "a key that is too long for any short string buffer";
  const Value object(Object{{key, 1.0}});
  bool present = false;
  const double* number = nullptr;
  EXPECT_EQ(allocationsOf([&] {
              present = object.hasOwnProperty(key);
              number = object[key].get_if<double>();
            }),
            0U);
  EXPECT_TRUE(present);
  EXPECT_EQ(*number, 1.0);
}

TEST(ValueAllocationTest, CopyingALongTextAllocatesOnce) {
  const Value text("a text too long for any short string buffer");
  EXPECT_EQ(allocationsOf([&text] { const Value copy = text; }), 1U);
}

}  // namespace
