// A component that takes its properties in the constructor and keeps its context.

#include "registration.hpp"

namespace service_runtime_test {

class Curious final : public Greeter {
 public:
  explicit Curious(const std::shared_ptr<cppmicroservices::AnyMap>& properties)
      : word_(properties->at("word").ToString()) {}

  void Activate(const std::shared_ptr<ComponentContext>& context) { context_ = context; }

  std::string greet() const override {
    const auto properties = context_->GetProperties();
    return word_ + ", " + properties.at("component.name").ToString() + ", " +
           context_->GetBundleContext().GetBundle().GetSymbolicName() + ", " +
           context_->GetServiceReference().GetProperty("word").ToString() + ", " +
           (context_->LocateService<Greeter>("nothing") ? "a service" : "no service");
  }

 private:
  const std::string word_;
  std::shared_ptr<ComponentContext> context_;
};

}  // namespace service_runtime_test

using service_runtime_test::Curious;
using service_runtime_test::Greeter;
using service_runtime_test::newInstance;

TEST_COMPONENT(Curious, (newInstance<Curious, Greeter>()))
TEST_BUNDLE(test_curious)
