#pragma once

/// @file
/// The service that tells what became of the components.

#include <string>
#include <vector>

#include "cppmicroservices/Bundle.h"
#include "cppmicroservices/ServiceInterface.h"
#include "cppmicroservices/servicecomponent/runtime/dto/ComponentConfigurationDTO.hpp"
#include "cppmicroservices/servicecomponent/runtime/dto/ComponentDescriptionDTO.hpp"

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace service {
namespace component {
namespace runtime {

/// Tells which components the started bundles have and how far each has come. The framework
/// publishes it when it is initialised. Components that the runtime could not take up, which it has
/// told by a framework event, are not among them.
class ServiceComponentRuntime {
 public:
  virtual ~ServiceComponentRuntime() = default;

  /// The components of these bundles, of all started bundles if none is given, in the order of
  /// their numbers.
  virtual std::vector<dto::ComponentDescriptionDTO> GetComponentDescriptionDTOs(
      const std::vector<Bundle>& bundles = {}) const = 0;
  /// The component of that name in the bundle; all empty if there is none.
  virtual dto::ComponentDescriptionDTO GetComponentDescriptionDTO(
      const Bundle& bundle, const std::string& name) const = 0;
  /// The state of the component: one element, or none if the component is not there any more.
  virtual std::vector<dto::ComponentConfigurationDTO> GetComponentConfigurationDTOs(
      const dto::ComponentDescriptionDTO& description) const = 0;
  /// Whether the component is there; none can be disabled.
  virtual bool IsComponentEnabled(const dto::ComponentDescriptionDTO& description) const = 0;
};

}  // namespace runtime
}  // namespace component
}  // namespace service
}  // namespace embedded_v1
}  // namespace cppmicroservices

CPPMICROSERVICES_DECLARE_SERVICE_INTERFACE(
    cppmicroservices::service::component::runtime::ServiceComponentRuntime,
    "cppmicroservices::service::component::runtime::ServiceComponentRuntime")
