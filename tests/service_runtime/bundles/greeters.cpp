// The source of all bundles without a fault. Their manifests say which of the components each has.

#include "registration.hpp"

namespace service_runtime_test {

class Plain final : public NotedGreeter {
 public:
  Plain() : NotedGreeter("Plain") {}
};

class Provider final : public NotedGreeter {
 public:
  Provider() : NotedGreeter("Provider") {}
};

/// Asks its context whenever it greets.
class Spare final : public NotedGreeter {
 public:
  Spare() : NotedGreeter("Spare") {}

  void Activate(const std::shared_ptr<ComponentContext>& context) { context_ = context; }
  std::string greet() const override {
    return context_->LocateService<Greeter>("nothing") ? "I am not alone" : NotedGreeter::greet();
  }

 private:
  std::shared_ptr<ComponentContext> context_;
};

#include "entry_points.inc"

}  // namespace service_runtime_test
