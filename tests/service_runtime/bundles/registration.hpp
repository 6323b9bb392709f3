#pragma once

// What the test bundles have in common: components that write into the journal, what makes and
// frees their instances, and the exported setter of the bundle's context.

#include <array>
#include <memory>
#include <new>
#include <string>
#include <tuple>
#include <utility>

#include "cppmicroservices/BundleContext.h"
#include "cppmicroservices/GlobalConfig.h"
#include "cppmicroservices/servicecomponent/detail/ComponentInstance.hpp"
#include "cppmicroservices/servicecomponent/detail/ComponentInstanceImpl.hpp"
#include "journal.hpp"
#include "services.hpp"

namespace service_runtime_test {

using cppmicroservices::service::component::ComponentContext;
using cppmicroservices::service::component::detail::ComponentInstance;
using cppmicroservices::service::component::detail::ComponentInstanceImpl;

/// A greeter that notes its construction, activation, deactivation and destruction.
class NotedGreeter : public Greeter {
 public:
  explicit NotedGreeter(std::string name) : name_(std::move(name)) { note("construct " + name_); }
  ~NotedGreeter() override { note("destroy " + name_); }
  NotedGreeter(const NotedGreeter&) = delete;
  NotedGreeter& operator=(const NotedGreeter&) = delete;

  std::string greet() const override { return "I am " + name_; }
  void Activate(const std::shared_ptr<ComponentContext>& /*context*/) { note("activate " + name_); }
  void Deactivate(const std::shared_ptr<ComponentContext>& /*context*/) {
    note("deactivate " + name_);
  }

 private:
  const std::string name_;
};

/// A listener that keeps a greeter and notes as NotedGreeter does.
class Consumer final : public Listener {
 public:
  explicit Consumer(std::shared_ptr<Greeter> greeter) : greeter_(std::move(greeter)) {
    note("construct Consumer");
  }
  ~Consumer() override { note("destroy Consumer"); }
  Consumer(const Consumer&) = delete;
  Consumer& operator=(const Consumer&) = delete;

  std::string hear() const override { return "heard: " + greeter_->greet(); }
  void Deactivate(const std::shared_ptr<ComponentContext>& /*context*/) {
    note("deactivate Consumer");
  }

 private:
  const std::shared_ptr<Greeter> greeter_;
};

/// The holder of a component; the names are those of its references.
template <class Impl, class Interfaces, class... References, class... Names>
ComponentInstance* newInstance(const Names&... referenceNames) {
  note("new");
  const std::array<std::string, sizeof...(References)> names{referenceNames...};
  return new (std::nothrow) ComponentInstanceImpl<Impl, Interfaces, References...>(names);
}

/// Notes it last, when a hook may throw and leave nothing undone.
inline void deleteInstance(ComponentInstance* instance) {
  delete instance;
  note("delete");
}

}  // namespace service_runtime_test

extern "C" US_ABI_EXPORT void TEST_CONTEXT_SETTER(cppmicroservices::BundleContextPrivate* context) {
  service_runtime_test::note(context ? TEST_BUNDLE_NAME ": context set"
                                     : TEST_BUNDLE_NAME ": context taken away");
}
