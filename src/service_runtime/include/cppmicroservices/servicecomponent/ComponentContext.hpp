#pragma once

/// @file
/// What a component's instance can ask of the runtime.

#include <memory>
#include <string>
#include <unordered_map>

#include "cppmicroservices/Any.h"
#include "cppmicroservices/Bundle.h"
#include "cppmicroservices/BundleContext.h"
#include "cppmicroservices/ServiceInterface.h"
#include "cppmicroservices/servicecomponent/ServiceComponentExport.h"

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace service {
namespace component {

/// The context of one component instance, valid from its creation to its release; after that every
/// operation throws ComponentException.
class ComponentContext {
 public:
  virtual ~ComponentContext() = default;

  /// The component's properties, "component.name" and "component.id" among them.
  virtual std::unordered_map<std::string, Any> GetProperties() const = 0;
  /// The context of the component's bundle.
  virtual BundleContext GetBundleContext() const = 0;
  /// The service that the component is published as.
  virtual ServiceReferenceBase GetServiceReference() const = 0;

  /// The service bound to the reference of that name; null if there is none of that name and type.
  template <class T>
  std::shared_ptr<T> LocateService(const std::string& referenceName) const {
    return std::static_pointer_cast<T>(LocateService(referenceName, us_service_interface_iid<T>()));
  }

 protected:
  virtual std::shared_ptr<void> LocateService(const std::string& referenceName,
                                              const std::string& interfaceId) const = 0;
};

}  // namespace component
}  // namespace service
}  // namespace embedded_v1
}  // namespace cppmicroservices
