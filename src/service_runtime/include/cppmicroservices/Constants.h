#pragma once

/// @file
/// Names of manifest members and service properties.

#include <string>

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace Constants {

inline const std::string SYSTEM_BUNDLE_LOCATION = "System Bundle";
inline const std::string SYSTEM_BUNDLE_SYMBOLICNAME = "system_bundle";

inline const std::string BUNDLE_ACTIVATOR = "bundle.activator";
inline const std::string BUNDLE_SYMBOLICNAME = "bundle.symbolic_name";
inline const std::string BUNDLE_VENDOR = "bundle.vendor";
inline const std::string BUNDLE_VERSION = "bundle.version";

/// The interfaces of a service: `std::vector<std::string>`.
inline const std::string OBJECTCLASS = "objectclass";
/// The number of a service, in the order of publication: `long`.
inline const std::string SERVICE_ID = "service.id";
/// The rank of a service among those of one interface: `int`, 0 where it is not given.
inline const std::string SERVICE_RANKING = "service.ranking";

}  // namespace Constants
}  // namespace embedded_v1
}  // namespace cppmicroservices
