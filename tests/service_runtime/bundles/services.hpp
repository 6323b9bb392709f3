#pragma once

#include <string>

namespace service_runtime_test {

/// The service that most test components offer.
class Greeter {
 public:
  virtual ~Greeter() = default;
  virtual std::string greet() const = 0;
};

/// The service of test components that use a Greeter.
class Listener {
 public:
  virtual ~Listener() = default;
  virtual std::string hear() const = 0;
};

}  // namespace service_runtime_test
