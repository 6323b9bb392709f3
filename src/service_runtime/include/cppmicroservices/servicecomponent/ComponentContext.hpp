#pragma once

/// @file
/// What a component's instance can ask of the runtime.

#include <memory>
#include <string>

#include "cppmicroservices/ServiceInterface.h"

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace service::component {

/// The context of one component instance. It is valid from the instance's creation to its release;
/// after that every operation throws std::runtime_error.
class ComponentContext {
 public:
  virtual ~ComponentContext() = default;

  /// The service bound to the reference of that name; null if there is none of that name and type.
  template <class T>
  std::shared_ptr<T> LocateService(const std::string& referenceName) const {
    return std::static_pointer_cast<T>(LocateService(referenceName, us_service_interface_iid<T>()));
  }

 protected:
  virtual std::shared_ptr<void> LocateService(const std::string& referenceName,
                                              const std::string& interfaceId) const = 0;
};

}  // namespace service::component
}  // namespace embedded_v1
}  // namespace cppmicroservices
