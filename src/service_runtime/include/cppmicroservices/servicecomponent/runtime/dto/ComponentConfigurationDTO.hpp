#pragma once

/// @file
/// The state of a component.

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "cppmicroservices/Any.h"
#include "cppmicroservices/servicecomponent/runtime/dto/ComponentDescriptionDTO.hpp"
#include "cppmicroservices/servicecomponent/runtime/dto/SatisfiedReferenceDTO.hpp"
#include "cppmicroservices/servicecomponent/runtime/dto/UnsatisfiedReferenceDTO.hpp"

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace service {
namespace component {
namespace runtime {
namespace dto {

/// How far a component has come.
enum class ComponentState : std::uint8_t {
  UNSATISFIED_REFERENCE,  ///< waits for a service that it refers to
  SATISFIED,              ///< published, not yet used
  ACTIVE                  ///< published, its instance is there
};

/// The state of a component.
struct ComponentConfigurationDTO {
  ComponentDescriptionDTO description;
  ComponentState state = ComponentState::UNSATISFIED_REFERENCE;
  /// The component's number, its "component.id".
  unsigned long id = 0;
  /// The properties its service carries, apart from the service registry's own.
  std::unordered_map<std::string, Any> properties;
  std::vector<SatisfiedReferenceDTO> satisfiedReferences;
  std::vector<UnsatisfiedReferenceDTO> unsatisfiedReferences;
};

}  // namespace dto
}  // namespace runtime
}  // namespace component
}  // namespace service
}  // namespace embedded_v1
}  // namespace cppmicroservices
