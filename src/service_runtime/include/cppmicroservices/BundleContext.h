#pragma once

/// @file
/// What a started bundle, or the program through its framework, can do in the framework.

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "cppmicroservices/ListenerFunctors.h"
#include "cppmicroservices/ListenerToken.h"
#include "cppmicroservices/ServiceInterface.h"
#include "cppmicroservices/ServiceReference.h"

namespace cppmicroservices {

// Outside the inline namespace: it passes between runtime and bundle as an opaque pointer only, and
// bundles may declare it by this name.
class BundleContextPrivate;

inline namespace embedded_v1 {

class Bundle;
class CoreBundleContext;

/// The context of a started bundle or of an initialised framework. It is valid until that is
/// stopped; an operation of an empty or invalid context throws std::runtime_error.
class US_Framework_EXPORT BundleContext {
 public:
  /// An empty context.
  BundleContext() = default;

  /// True while the context is valid.
  explicit operator bool() const;
  bool operator==(const BundleContext& other) const { return d == other.d; }
  bool operator!=(const BundleContext& other) const { return d != other.d; }
  BundleContext& operator=(std::nullptr_t);

  /// The bundle this is the context of.
  Bundle GetBundle() const;
  /// The installed bundle of that number; an empty handle if there is none.
  Bundle GetBundle(long id) const;
  /// All installed bundles in the order of installation; the framework itself comes first.
  std::vector<Bundle> GetBundles() const;

  /// Installs the bundle in the shared library at `location`. A bundle that is installed from that
  /// file already is given back as it is. Nothing of the library is loaded yet.
  /// @return the one bundle of the library
  /// @throws std::runtime_error if the file cannot be read, is no bundle of this runtime, or has a
  ///         manifest that is wrong or asks for what this runtime does not do; the text begins with
  ///         `location`
  std::vector<Bundle> InstallBundles(const std::string& location);

  /// The services published under the interface `clazz` (under any, if empty) whose properties
  /// match the LDAP filter, the best one first: by "service.ranking", then the one published first.
  /// @throws std::invalid_argument if `filter` is not empty and no LDAP filter
  std::vector<ServiceReferenceU> GetServiceReferences(const std::string& clazz,
                                                      const std::string& filter = std::string());

  /// @copydoc GetServiceReferences(const std::string&, const std::string&)
  template <class S>
  std::vector<ServiceReference<S>> GetServiceReferences(const std::string& filter = std::string()) {
    const std::vector<ServiceReferenceU> found =
        GetServiceReferences(us_service_interface_iid<S>(), filter);
    return {found.begin(), found.end()};
  }

  /// The best one of the services published under the interface; an empty handle if there is none.
  ServiceReferenceU GetServiceReference(const std::string& clazz);
  template <class S>
  ServiceReference<S> GetServiceReference() {
    return ServiceReference<S>(GetServiceReference(us_service_interface_iid<S>()));
  }

  /// The service object behind a handle. The first call activates the component: it makes the
  /// instance and hands it what it refers to; later calls give the same object. Null if the service
  /// has gone or cannot be made; a framework event says why.
  /// The pointer keeps the object's library loaded.
  /// @throws std::invalid_argument if the handle is empty
  std::shared_ptr<void> GetService(const ServiceReferenceBase& reference);
  /// As above, under all interfaces of the service.
  InterfaceMapConstPtr GetService(const ServiceReferenceU& reference);
  template <class S>
  std::shared_ptr<S> GetService(const ServiceReference<S>& reference) {
    const ServiceReferenceBase& base = reference;
    return std::static_pointer_cast<S>(GetService(base));
  }

  /// Calls `listener` for each event of the framework from now on, on the thread that causes it and
  /// with no lock held. What the listener throws is dropped.
  ListenerToken AddFrameworkListener(const FrameworkListener& listener);
  /// Removes the listener; one that is just being called on another thread may still finish.
  void RemoveListener(ListenerToken token);

 private:
  friend class CoreBundleContext;
  explicit BundleContext(std::shared_ptr<BundleContextPrivate> context);
  std::shared_ptr<CoreBundleContext> core() const;

  std::shared_ptr<BundleContextPrivate> d;
};

}  // namespace embedded_v1
}  // namespace cppmicroservices
