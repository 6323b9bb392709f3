#pragma once

/// @file
/// A published service as plain data.

#include <string>
#include <unordered_map>

#include "cppmicroservices/Any.h"

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace framework {
namespace dto {

/// A published service as plain data.
struct ServiceReferenceDTO {
  unsigned long id = 0;
  /// The number of the bundle that publishes it.
  unsigned long bundle = 0;
  std::unordered_map<std::string, Any> properties;
};

}  // namespace dto
}  // namespace framework
}  // namespace embedded_v1
}  // namespace cppmicroservices
