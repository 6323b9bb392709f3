// Holds every test of the program to leaving no handle and no element behind.

#include <gtest/gtest.h>

#include "reference_host/gx/live_models.hpp"

namespace {

class HandleCheck : public testing::EmptyTestEventListener {
  void OnTestEnd(const testing::TestInfo& /*test*/) override {
    // A model lives as long as a handle on it or on one of its elements.
    EXPECT_EQ(reference_host::countLiveModels(), 0U) << "models are left behind";
  }
};

const bool kInstalled = [] {
  testing::UnitTest::GetInstance()->listeners().Append(new HandleCheck);
  return true;
}();

}  // namespace
