// A listener that refers to a greeter of another bundle.

#include "registration.hpp"

namespace service_runtime_test {

class Consumer final : public NotedListener {
 public:
  explicit Consumer(const std::shared_ptr<Greeter>& greeter) : NotedListener(greeter) {}
};

}  // namespace service_runtime_test

using service_runtime_test::Consumer;
using service_runtime_test::Greeter;
using service_runtime_test::Listener;
using service_runtime_test::newInstance;

TEST_COMPONENT(Consumer, (newInstance<Consumer, Listener, std::shared_ptr<Greeter>>("greeter")))
TEST_BUNDLE(test_consumer)
