#pragma once

/// @file
/// A reference with the services bound to it.

#include <string>
#include <vector>

#include "cppmicroservices/servicecomponent/runtime/dto/ServiceReferenceDTO.hpp"

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace service {
namespace component {
namespace runtime {
namespace dto {

/// A reference with the services bound to it.
struct SatisfiedReferenceDTO {
  std::string name;
  /// The LDAP filter of the manifest; empty if it gives none.
  std::string target;
  std::vector<framework::dto::ServiceReferenceDTO> boundServices;
};

}  // namespace dto
}  // namespace runtime
}  // namespace component
}  // namespace service
}  // namespace embedded_v1
}  // namespace cppmicroservices
