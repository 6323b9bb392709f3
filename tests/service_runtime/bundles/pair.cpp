// A listener that refers to one of the two greeters of the same bundle, by a property. It stands
// before them in the manifest.

#include "registration.hpp"

namespace service_runtime_test {

class Wanted final : public NotedGreeter {
 public:
  Wanted() : NotedGreeter("Wanted") {}
};

class Unwanted final : public NotedGreeter {
 public:
  Unwanted() : NotedGreeter("Unwanted") {}
};

class PairListener final : public NotedListener {
 public:
  explicit PairListener(const std::shared_ptr<Greeter>& greeter) : NotedListener(greeter) {}
};

}  // namespace service_runtime_test

using service_runtime_test::Greeter;
using service_runtime_test::Listener;
using service_runtime_test::newInstance;
using service_runtime_test::PairListener;
using service_runtime_test::Unwanted;
using service_runtime_test::Wanted;

TEST_COMPONENT(PairListener,
               (newInstance<PairListener, Listener, std::shared_ptr<Greeter>>("greeter")))
TEST_COMPONENT(Unwanted, (newInstance<Unwanted, Greeter>()))
TEST_COMPONENT(Wanted, (newInstance<Wanted, Greeter>()))
TEST_BUNDLE(test_pair)
