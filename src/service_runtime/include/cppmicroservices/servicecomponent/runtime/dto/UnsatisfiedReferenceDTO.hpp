#pragma once

/// @file
/// A reference that no service satisfies.

#include <string>
#include <vector>

#include "cppmicroservices/servicecomponent/runtime/dto/ServiceReferenceDTO.hpp"

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace service {
namespace component {
namespace runtime {
namespace dto {

/// A reference that no service satisfies.
struct UnsatisfiedReferenceDTO {
  std::string name;
  /// The LDAP filter of the manifest; empty if it gives none.
  std::string target;
  /// The services that match; empty, since one would satisfy the reference.
  std::vector<framework::dto::ServiceReferenceDTO> targetServices;
};

}  // namespace dto
}  // namespace runtime
}  // namespace component
}  // namespace service
}  // namespace embedded_v1
}  // namespace cppmicroservices
