#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "cppmicroservices/AnyMap.h"
#include "cppmicroservices/ServiceInterface.h"

namespace cppmicroservices {
inline namespace embedded_v1 {

class BundlePrivate;
namespace detail {
class Component;
}

/// One publication of a service. All but `published` stays as it was made, so that handles can read
/// it at any time.
struct ServiceRecord {
  long id = 0;
  int ranking = 0;
  std::vector<std::string> interfaces;
  AnyMap properties;
  std::weak_ptr<BundlePrivate> bundle;
  std::weak_ptr<detail::Component> component;  ///< that makes the service, or:
  InterfaceMapConstPtr object;                 ///< a service of the runtime's own
  std::atomic<bool> published{false};
};

}  // namespace embedded_v1
}  // namespace cppmicroservices
