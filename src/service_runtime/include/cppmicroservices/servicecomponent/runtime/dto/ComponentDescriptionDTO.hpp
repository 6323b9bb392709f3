#pragma once

/// @file
/// A component as the manifest describes it.

#include <string>
#include <unordered_map>
#include <vector>

#include "cppmicroservices/Any.h"
#include "cppmicroservices/servicecomponent/runtime/dto/BundleDTO.hpp"
#include "cppmicroservices/servicecomponent/runtime/dto/ReferenceDTO.hpp"

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace service {
namespace component {
namespace runtime {
namespace dto {

/// A component as the manifest describes it, defaults filled in.
struct ComponentDescriptionDTO {
  std::string name;
  framework::dto::BundleDTO bundle;
  std::string scope;
  std::string implementationClass;
  bool defaultEnabled = false;
  bool immediate = false;
  std::vector<std::string> serviceInterfaces;
  /// The properties that the manifest gives.
  std::unordered_map<std::string, Any> properties;
  std::vector<ReferenceDTO> references;
};

}  // namespace dto
}  // namespace runtime
}  // namespace component
}  // namespace service
}  // namespace embedded_v1
}  // namespace cppmicroservices
