// Components with one fault each, and a good one.

#include "registration.hpp"

namespace service_runtime_test {

class Good final : public NotedGreeter {
 public:
  Good() : NotedGreeter("Good") {}
};

/// A Listener where the manifest speaks of a Greeter.
class WrongInterface final : public Listener {
 public:
  std::string hear() const override { return "nothing"; }
};

ComponentInstance* newConsumer(const char* referenceName) {
  return newInstance<Consumer, std::tuple<Listener>, std::shared_ptr<Greeter>>(referenceName);
}

// The pair of exported functions of one component.
#define TEST_COMPONENT(Name, makeInstance)                                                \
  extern "C" US_ABI_EXPORT ComponentInstance* NewInstance_service_runtime_test_##Name() { \
    return makeInstance;                                                                  \
  }                                                                                       \
  extern "C" US_ABI_EXPORT void DeleteInstance_service_runtime_test_##Name(               \
      ComponentInstance* instance) {                                                      \
    deleteInstance(instance);                                                             \
  }

TEST_COMPONENT(NullFactory, nullptr)
TEST_COMPONENT(WrongInterface, (newInstance<WrongInterface, std::tuple<Listener>>()))
TEST_COMPONENT(WrongReference, newConsumer("another name"))
TEST_COMPONENT(BrokenReference, newConsumer("greeter"))
TEST_COMPONENT(Good, (newInstance<Good, std::tuple<Greeter>>()))
TEST_COMPONENT(RingListener, nullptr)
TEST_COMPONENT(RingGreeter, nullptr)

}  // namespace service_runtime_test
