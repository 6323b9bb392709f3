#pragma once

/// @file
/// What the program can do in its framework, and a bundle in the one it is started in.

#include <memory>
#include <string>
#include <vector>

#include "cppmicroservices/Bundle.h"
#include "cppmicroservices/FrameworkEvent.h"
#include "cppmicroservices/ServiceInterface.h"
#include "cppmicroservices/ServiceReference.h"

namespace cppmicroservices {

// Outside the inline namespace: it passes between runtime and bundle as an opaque pointer only, and
// bundles may declare it by this name.
class BundleContextPrivate;

inline namespace embedded_v1 {

/// The context of a started bundle or framework. It is valid until that is stopped; an operation of
/// an empty or invalid context throws std::runtime_error.
class US_ABI_EXPORT BundleContext {
 public:
  /// An empty context.
  BundleContext() = default;

  /// True while the context is valid.
  explicit operator bool() const;

  /// Installs the bundle in the shared library at `location`; a path that is relative counts from
  /// the folder that is the current one now. A bundle that is installed from that file already is
  /// given back as it is. Nothing of the library is loaded yet.
  /// @return the one bundle of the library
  /// @throws std::runtime_error if the file cannot be read, is no bundle of this runtime, or has a
  ///         manifest that is wrong or asks for what this runtime does not do; the text begins with
  ///         `location`
  std::vector<Bundle> InstallBundles(const std::string& location);

  /// The services published under the interface `clazz` (under any, if empty) whose properties
  /// match the LDAP filter, the best one first: by "service.ranking", then the one published first.
  ///
  /// A filter is `&`, `|` and `!` over comparisons with `=`, `>=`, `<=` and `~=`, in the text form
  /// of RFC 4515; `(name=*)` asks whether the property is there, `*` inside a value stands for any
  /// text, `\` takes `(`, `)`, `*` or `\` as it is and may stand before nothing else.
  /// Texts compare bytewise, `~=` without regard to white space and ASCII case; numbers by value,
  /// integers to the last digit; `true` and `false` without regard to case; names without regard to
  /// case. Of a property with several values one has to match. A property whose type does not fit
  /// the comparison does not match.
  /// @throws std::invalid_argument if `filter` is not empty and no LDAP filter, naming the position
  ///         (from 1) and what is wrong there
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
  template <class S>
  ServiceReference<S> GetServiceReference() {
    const std::vector<ServiceReference<S>> found = GetServiceReferences<S>();
    return found.empty() ? ServiceReference<S>() : found.front();
  }

  /// The service object behind a handle. The first call activates the component: it makes the
  /// instance and hands it what it refers to; later calls give the same object. Null if the service
  /// has gone or cannot be made; a framework event says why.
  /// The pointer keeps the object's library loaded.
  /// @throws std::invalid_argument if the handle is empty
  template <class S>
  std::shared_ptr<S> GetService(const ServiceReference<S>& reference) {
    return std::static_pointer_cast<S>(service(reference));
  }

  /// Calls `listener` for each event of the framework from now on, on the thread that causes it and
  /// with no lock held. What the listener throws is dropped.
  void AddFrameworkListener(const FrameworkListener& listener);

 private:
  friend class CoreBundleContext;
  explicit BundleContext(std::shared_ptr<BundleContextPrivate> context);
  std::shared_ptr<CoreBundleContext> core() const;
  std::shared_ptr<void> service(const ServiceReferenceBase& reference);

  std::shared_ptr<BundleContextPrivate> d;
};

}  // namespace embedded_v1
}  // namespace cppmicroservices
