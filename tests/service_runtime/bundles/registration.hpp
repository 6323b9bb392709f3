#pragma once

// What the test bundles have in common: holders that write into the journal, the exported
// functions, and components that greet.

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
class NotedListener : public Listener {
 public:
  explicit NotedListener(std::shared_ptr<Greeter> greeter) : greeter_(std::move(greeter)) {
    note("construct listener");
  }
  ~NotedListener() override { note("destroy listener"); }
  NotedListener(const NotedListener&) = delete;
  NotedListener& operator=(const NotedListener&) = delete;

  std::string hear() const override { return "heard: " + greeter_->greet(); }
  void Deactivate(const std::shared_ptr<ComponentContext>& /*context*/) {
    note("deactivate listener");
  }

 private:
  const std::shared_ptr<Greeter> greeter_;
};

/// The holder of a component; the names are those of its references, one for each dependency.
template <class Impl, class Interface, class... Dependencies, class... Names>
ComponentInstance* newInstance(Names... names) {
  const std::array<std::string, sizeof...(Dependencies)> referenceNames{names...};
  return new (std::nothrow)
      ComponentInstanceImpl<Impl, std::tuple<Interface>, Dependencies...>(referenceNames);
}

}  // namespace service_runtime_test

/// The pair of exported functions of one component; `release` takes the instance.
#define TEST_COMPONENT_FREED_BY(symbol, makeInstance, release)                \
  extern "C" US_ABI_EXPORT service_runtime_test::ComponentInstance*           \
      NewInstance_service_runtime_test_##symbol() {                           \
    service_runtime_test::note("new " #symbol);                               \
    return makeInstance;                                                      \
  }                                                                           \
  extern "C" US_ABI_EXPORT void DeleteInstance_service_runtime_test_##symbol( \
      service_runtime_test::ComponentInstance* instance) {                    \
    service_runtime_test::note("delete " #symbol);                            \
    release(instance);                                                        \
  }
#define TEST_COMPONENT(symbol, makeInstance) TEST_COMPONENT_FREED_BY(symbol, makeInstance, delete)

/// The exported context setter of the bundle of that name.
#define TEST_BUNDLE(symbolicName)                                               \
  extern "C" US_ABI_EXPORT void _us_set_bundle_context_instance_##symbolicName( \
      cppmicroservices::BundleContextPrivate* context) {                        \
    service_runtime_test::note(context ? #symbolicName ": context set"          \
                                       : #symbolicName ": context taken away"); \
  }
