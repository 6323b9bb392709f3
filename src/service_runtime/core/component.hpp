#pragma once

#include <exception>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "bundle_file/manifest.hpp"
#include "core/component_context.hpp"
#include "core/service_record.hpp"
#include "core/shared_library.hpp"
#include "cppmicroservices/AnyMap.h"
#include "cppmicroservices/servicecomponent/detail/ComponentInstance.hpp"

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace detail {

/// Runs code of a bundle. What it throws does not leave here: the exception's own class may be the
/// bundle's, and outlive its library.
/// @return what went wrong; empty if nothing did
template <class Step>
std::string guarded(const std::string& what, Step step) {
  try {
    step();
    return {};
  } catch (const std::exception& error) {
    return what + " failed: " + error.what();
  } catch (...) {
    return what + " failed: an exception that is no std::exception";
  }
}

/// The functions of a bundle that make and free the holder of one component.
struct EntryPoints {
  using Holder = service::component::detail::ComponentInstance;
  using NewFunction = Holder*();
  using DeleteFunction = void(Holder*);

  std::shared_ptr<SharedLibrary> library;
  NewFunction* newInstance = nullptr;
  DeleteFunction* deleteInstance = nullptr;

  /// The name of a function: `prefix` and the class with `_` for `::`.
  static std::string symbol(const std::string& prefix, const std::string& implementationClass);
  /// No functions.
  EntryPoints() = default;
  /// Looks the functions of a class up.
  /// @throws std::runtime_error naming the function that the library does not export
  EntryPoints(std::shared_ptr<SharedLibrary> loaded, const std::string& implementationClass);
};

/// The living instance of a component: the bundle's holder and the pointers that clients get.
/// Everything here runs code of the bundle and is called with no lock held.
class ComponentInstance {
 public:
  /// Makes an instance and activates it.
  /// @throws std::runtime_error saying which step failed; nothing is left behind then
  ComponentInstance(const EntryPoints& entryPoints, const std::vector<std::string>& interfaces,
                    std::shared_ptr<ComponentContextImpl> context);
  /// `end` has to have been called. Objects that clients still hold live on, with their library.
  ~ComponentInstance();
  ComponentInstance(const ComponentInstance&) = delete;
  ComponentInstance& operator=(const ComponentInstance&) = delete;

  /// Deactivates the instance, makes its context invalid and frees the holder.
  /// @return what went wrong, step by step
  std::vector<std::string> end();

  /// The object under its interfaces. Each pointer keeps the library loaded.
  const InterfaceMapConstPtr& services() const { return services_; }

 private:
  using Holder = EntryPoints::Holder;

  void takeServices(const std::vector<std::string>& interfaces);
  std::string freeHolder();

  const EntryPoints entryPoints_;
  std::shared_ptr<ComponentContextImpl> context_;
  Holder* holder_ = nullptr;
  InterfaceMapConstPtr services_;
};

/// A component of a started bundle. What is not const is guarded by the framework's lock.
class Component {
 public:
  Component(ComponentDescription componentDescription, unsigned long number,
            const std::shared_ptr<BundlePrivate>& owner, EntryPoints functions);

  const ComponentDescription description;
  const unsigned long id;
  const AnyMap properties;  ///< the manifest's, with interfaces, name and number
  const std::weak_ptr<BundlePrivate> bundle;
  const EntryPoints entryPoints;

  std::shared_ptr<ServiceRecord> record;              ///< while it is published
  std::vector<std::shared_ptr<ServiceRecord>> bound;  ///< then, one for each reference
  std::shared_ptr<ComponentInstance> instance;        ///< while it is active
  std::thread::id activating;                         ///< the thread that makes the instance
};

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
