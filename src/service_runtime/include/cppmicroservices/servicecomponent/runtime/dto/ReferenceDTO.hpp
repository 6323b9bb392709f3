#pragma once

/// @file
/// A reference as the manifest describes it.

#include <string>

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace service {
namespace component {
namespace runtime {
namespace dto {

/// A reference as the manifest describes it, defaults filled in.
struct ReferenceDTO {
  std::string name;
  std::string interfaceName;
  std::string cardinality;
  std::string policy;
  std::string policyOption;
  /// The LDAP filter of the manifest; empty if it gives none.
  std::string target;
};

}  // namespace dto
}  // namespace runtime
}  // namespace component
}  // namespace service
}  // namespace embedded_v1
}  // namespace cppmicroservices
