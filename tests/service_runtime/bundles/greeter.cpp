// A bundle with one component that refers to nothing. The macros TEST_... say which.

#include "registration.hpp"

#define TEST_APPLY(macro, ...) macro(__VA_ARGS__)

namespace service_runtime_test {

class TEST_CLASS final : public NotedGreeter {
 public:
  TEST_CLASS() : NotedGreeter(TEST_CLASS_TEXT) {}
};

}  // namespace service_runtime_test

using service_runtime_test::Greeter;
using service_runtime_test::newInstance;
using service_runtime_test::TEST_CLASS;

TEST_APPLY(TEST_COMPONENT, TEST_CLASS, (newInstance<TEST_CLASS, Greeter>()))
TEST_APPLY(TEST_BUNDLE, TEST_BUNDLE_NAME)
