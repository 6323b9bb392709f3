// Node builders that the product's header line is not meant to be given.

#include "line_maker.hpp"

namespace service_runtime_test {

class Anonymous final : public LineMaker {
 public:
  Anonymous() : LineMaker("Anonymous") {}
};

class Other final : public LineMaker {
 public:
  Other() : LineMaker("Other") {}
};

class LongerName final : public LineMaker {
 public:
  LongerName() : LineMaker("LongerName") {}
};

}  // namespace service_runtime_test

using service_runtime_test::Anonymous;
using service_runtime_test::LongerName;
using service_runtime_test::newInstance;
using service_runtime_test::Other;
using tessel::build::json::NodeBuilder;

TEST_COMPONENT(Anonymous, (newInstance<Anonymous, NodeBuilder>()))
TEST_COMPONENT(Other, (newInstance<Other, NodeBuilder>()))
TEST_COMPONENT(LongerName, (newInstance<LongerName, NodeBuilder>()))
TEST_BUNDLE(test_strangers)
