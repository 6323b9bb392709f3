#pragma once

/// @file
/// The service that tells what became of the components.

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "cppmicroservices/Any.h"
#include "cppmicroservices/Bundle.h"
#include "cppmicroservices/ServiceInterface.h"

namespace cppmicroservices {
inline namespace embedded_v1 {

namespace framework::dto {

/// A bundle as plain data.
struct BundleDTO {
  unsigned long id = 0;
};

}  // namespace framework::dto

namespace service::component::runtime {

namespace dto {

/// A reference as the manifest describes it.
struct ReferenceDTO {
  std::string name;
  std::string interfaceName;
  /// The LDAP filter of the manifest; empty if it gives none.
  std::string target;
};

/// A component as the manifest describes it.
struct ComponentDescriptionDTO {
  std::string name;
  framework::dto::BundleDTO bundle;
  std::vector<std::string> serviceInterfaces;
  /// The properties that the manifest gives.
  std::unordered_map<std::string, Any> properties;
  std::vector<ReferenceDTO> references;
};

/// How far a component has come.
enum class ComponentState : std::uint8_t {
  UNSATISFIED_REFERENCE,  ///< waits for a service that it refers to
  SATISFIED,              ///< published, not yet used
  ACTIVE                  ///< published, its instance is there
};

/// A reference that no service satisfies.
struct UnsatisfiedReferenceDTO {
  std::string name;
  std::string target;
};

/// The state of a component.
struct ComponentConfigurationDTO {
  ComponentDescriptionDTO description;
  ComponentState state = ComponentState::UNSATISFIED_REFERENCE;
  /// The component's number, its "component.id".
  unsigned long id = 0;
  std::vector<UnsatisfiedReferenceDTO> unsatisfiedReferences;
};

}  // namespace dto

/// Tells which components the started bundles have and how far each has come. The framework
/// publishes it when it is started. Components that the runtime could not take up, which it has
/// told by a framework event, are not among them.
class ServiceComponentRuntime {
 public:
  virtual ~ServiceComponentRuntime() = default;

  /// The components of these bundles, of all started bundles if none is given, in the order of
  /// their numbers.
  virtual std::vector<dto::ComponentDescriptionDTO> GetComponentDescriptionDTOs(
      const std::vector<Bundle>& bundles = {}) const = 0;
  /// The state of the component: one element, or none if the component is not there any more.
  virtual std::vector<dto::ComponentConfigurationDTO> GetComponentConfigurationDTOs(
      const dto::ComponentDescriptionDTO& description) const = 0;
};

}  // namespace service::component::runtime
}  // namespace embedded_v1
}  // namespace cppmicroservices

CPPMICROSERVICES_DECLARE_SERVICE_INTERFACE(
    cppmicroservices::service::component::runtime::ServiceComponentRuntime,
    "cppmicroservices::service::component::runtime::ServiceComponentRuntime")
