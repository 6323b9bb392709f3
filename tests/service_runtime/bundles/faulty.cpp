// Components with one fault each, and a good one.

#include <stdexcept>

#include "registration.hpp"

namespace service_runtime_test {

class Good : public NotedGreeter {
 public:
  Good() : NotedGreeter("Good") {}
};

class ThrowingConstructor final : public Good {
 public:
  ThrowingConstructor() { throw std::logic_error("no room"); }
};

class ThrowingSomething final : public Good {
 public:
  ThrowingSomething() { throw 42; }  // NOLINT: what is thrown is no exception on purpose
};

class ThrowingActivate final : public Good {
 public:
  void Activate(const std::shared_ptr<ComponentContext>& /*context*/) {
    throw std::runtime_error("not today");
  }
};

class ThrowingDeactivate final : public Good {
 public:
  void Deactivate(const std::shared_ptr<ComponentContext>& /*context*/) {
    throw std::runtime_error("not yet");
  }
};

class ThrowingDelete final : public Good {};

[[noreturn]] void throwStillInUse(ComponentInstance* instance) {
  delete instance;
  throw std::runtime_error("still in use");
}

/// Offers a Listener where the manifest speaks of a Greeter.
class WrongInterface final : public Listener {
 public:
  std::string hear() const override { return "nothing"; }
};

class BrokenReference final : public NotedListener {
 public:
  explicit BrokenReference(const std::shared_ptr<Greeter>& greeter) : NotedListener(greeter) {}
};

}  // namespace service_runtime_test

using service_runtime_test::BrokenReference;
using service_runtime_test::Good;
using service_runtime_test::Greeter;
using service_runtime_test::Listener;
using service_runtime_test::newInstance;
using service_runtime_test::ThrowingActivate;
using service_runtime_test::ThrowingConstructor;
using service_runtime_test::ThrowingDeactivate;
using service_runtime_test::ThrowingDelete;
using service_runtime_test::ThrowingSomething;
using service_runtime_test::throwStillInUse;
using service_runtime_test::WrongInterface;

TEST_COMPONENT(Good, (newInstance<Good, Greeter>()))
TEST_COMPONENT(NullFactory, nullptr)
TEST_COMPONENT(ThrowingConstructor, (newInstance<ThrowingConstructor, Greeter>()))
TEST_COMPONENT(ThrowingSomething, (newInstance<ThrowingSomething, Greeter>()))
TEST_COMPONENT(ThrowingActivate, (newInstance<ThrowingActivate, Greeter>()))
TEST_COMPONENT(ThrowingDeactivate, (newInstance<ThrowingDeactivate, Greeter>()))
TEST_COMPONENT_FREED_BY(ThrowingDelete, (newInstance<ThrowingDelete, Greeter>()), throwStillInUse)
TEST_COMPONENT_FREED_BY(ThrowingTwice, (newInstance<ThrowingConstructor, Greeter>()),
                        throwStillInUse)
TEST_COMPONENT(WrongInterface, (newInstance<WrongInterface, Listener>()))
TEST_COMPONENT(WrongReference,
               (newInstance<BrokenReference, Listener, std::shared_ptr<Greeter>>("another name")))
TEST_COMPONENT(BrokenReference,
               (newInstance<BrokenReference, Listener, std::shared_ptr<Greeter>>("greeter")))
TEST_BUNDLE(test_faulty)
