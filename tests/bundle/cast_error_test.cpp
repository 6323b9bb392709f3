// The cast error is thrown in a library that exports none of its types, and caught outside it.

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <boost/exception/exception.hpp>
#include <exception>
#include <memory>

#include "foundation/except.hpp"

namespace {

using foundation::core::except::Exception;

struct Close {
  void operator()(void* library) const { dlclose(library); }
};

class CastErrorAcrossLibraries : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(library_, nullptr) << dlerror();
    throw_ = reinterpret_cast<void (*)()>(dlsym(library_.get(), "tessel_test_throw_cast_error"));
    ASSERT_NE(throw_, nullptr);
  }

  template <typename Caught>
  bool isCaughtAs() const {
    try {
      throw_();
    } catch (const Caught&) {
      return true;
    } catch (...) {
    }
    return false;
  }

  std::unique_ptr<void, Close> library_{dlopen(CAST_ERROR_LIBRARY, RTLD_NOW | RTLD_LOCAL)};
  void (*throw_)() = nullptr;
};

TEST_F(CastErrorAcrossLibraries, IsCaughtAsEachOfItsTypes) {
  using CannotCast = Exception<gx0::messages::CannotCastIncompatibleTypes, std::exception>;
  EXPECT_TRUE(isCaughtAs<CannotCast>());
  EXPECT_TRUE(isCaughtAs<foundation::core::except::IMsgIDException>());
  EXPECT_TRUE(isCaughtAs<foundation::core::except::IUserException>());
  EXPECT_TRUE(isCaughtAs<foundation::core::except::IException>());
  EXPECT_TRUE(isCaughtAs<boost::exception_detail::clone_base>());
  EXPECT_TRUE(isCaughtAs<boost::exception>());
  EXPECT_TRUE(isCaughtAs<std::exception>());
}

}  // namespace
