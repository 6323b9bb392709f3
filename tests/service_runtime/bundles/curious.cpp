// A component that keeps its context.

#include "registration.hpp"

namespace service_runtime_test {

class Curious final : public Greeter {
 public:
  void Activate(const std::shared_ptr<ComponentContext>& context) { context_ = context; }

  std::string greet() const override {
    return context_->LocateService<Greeter>("nothing") ? "a service" : "no service";
  }

 private:
  std::shared_ptr<ComponentContext> context_;
};

}  // namespace service_runtime_test

using service_runtime_test::Curious;
using service_runtime_test::Greeter;
using service_runtime_test::newInstance;

TEST_COMPONENT(Curious, (newInstance<Curious, Greeter>()))
TEST_BUNDLE(test_curious)
