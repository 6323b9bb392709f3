// A node builder that the product's header line takes for the product's own inline builder.

#include "line_maker.hpp"

namespace service_runtime_test {

class StandIn final : public LineMaker {
 public:
  StandIn() : LineMaker("StandIn") {}
};

}  // namespace service_runtime_test

using service_runtime_test::newInstance;
using service_runtime_test::StandIn;
using tessel::build::json::NodeBuilder;

TEST_COMPONENT(StandIn, (newInstance<StandIn, NodeBuilder>()))
TEST_BUNDLE(test_stand_in)
