#pragma once

/// @file
/// A bundle as plain data.

#include <cstdint>
#include <string>

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace framework {
namespace dto {

/// A bundle as plain data.
struct BundleDTO {
  unsigned long id = 0;
  /// A value of Bundle::State.
  std::uint32_t state = 0;
  std::string symbolicName;
  std::string version;
};

}  // namespace dto
}  // namespace framework
}  // namespace embedded_v1
}  // namespace cppmicroservices
