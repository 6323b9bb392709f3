#include "controls/common_fields.hpp"

#include <gmock/gmock.h>

#include <cmath>
#include <cstdint>

#include "gx/zero.hpp"
#include "support/json.hpp"
#include "support/records.hpp"

namespace tessel::build::json::controls {
namespace {

using document::gxzero::ButtonNode;
using document::gxzero::LumoControlPosition;
using foundation::json::Value;
using test_support::json;
using test_support::Records;
using test_support::recordsOf;

constexpr boost::uuids::uuid kNil{};

class CommonFields : public ::testing::Test {
 protected:
  void TearDown() override {
    position_ = LumoControlPosition();
    node_ = ButtonNode();
    EXPECT_EQ(model_.get()->getHeldElementCount(), 0U);
  }

  gx::zero::Model model_ = gx::zero::Model::create();
  ButtonNode node_ = ButtonNode::Builder(model_).createButtonNode(kNil);
  LumoControlPosition position_ =
      node_.get()->createIntoPosition(LumoControlPosition::Builder(), kNil);
};

TEST_F(CommonFields, ColumnsConvertAsThePlatformDoes) {
  constexpr std::uint64_t kTwoTo63 = std::uint64_t{1} << 63U;
  struct Row {
    const char* description;
    double column;
    std::uint64_t stored;
  };
  const Row rows[] = {
      {"truncated, not rounded", 3.9, 3},
      {"a negative number truncates toward zero", -1.9, 18446744073709551615U},
      {"2^63", 9223372036854775808.0, kTwoTo63},
      {"2^64 fits no more", 18446744073709551616.0, kTwoTo63},
      {"the next double below -2^63 fits no more", -9223372036854777856.0, kTwoTo63},
      {"not a number", std::nan(""), kTwoTo63},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.description);
    const Value value(Value::Object{{"startColumn", row.column}, {"endColumn", row.column}});
    EXPECT_EQ(recordsOf([&] { applyControlPosition(position_, value); }), Records());
    EXPECT_EQ(position_.get()->getStartColumn(), row.stored);
    EXPECT_EQ(position_.get()->getEndColumn(), row.stored);
  }
}

TEST_F(CommonFields, AnAbsentColumnIsNotSet) {
  const auto& properties = LumoControlPosition::metaClass().get()->getProperties();
  applyControlPosition(position_, json(R"({"endColumn":9})"));
  EXPECT_FALSE(position_.get()->isSet(properties[0]));
  EXPECT_TRUE(position_.get()->isSet(properties[1]));
  EXPECT_EQ(position_.get()->getEndColumn(), 9U);
}

TEST_F(CommonFields, AnIdWritesNoRecord) {
  EXPECT_EQ(recordsOf([&] { applyControlId(node_, json(R"({"controlId":"c"})")); }), Records());
  EXPECT_EQ(node_.get()->getId(), u"c");
}

TEST_F(CommonFields, EachRoutineReleasesItsReferenceAlsoWhenItFails) {
  EXPECT_THROW(applyControlPosition(position_, json(R"({"startColumn":"3"})")), std::runtime_error);
  EXPECT_EQ(position_.get()->getHandleCount(), 1U);
  applyControlId(node_, json("{}"));
  EXPECT_EQ(node_.get()->getHandleCount(), 1U);
}

}  // namespace
}  // namespace tessel::build::json::controls
