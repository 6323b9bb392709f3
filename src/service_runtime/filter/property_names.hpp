#pragma once

#include <string>

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace detail::property_names {

/// The interfaces of a service: `std::vector<std::string>`.
inline const std::string kInterfaces = "objectclass";
/// The number of a service, in the order of publication: `long`.
inline const std::string kServiceId = "service.id";
/// The rank of a service among those of one interface: `int`, 0 where it is not given.
inline const std::string kRanking = "service.ranking";
/// The name of the component that a service comes from: `std::string`.
inline const std::string kComponentName = "component.name";
/// Its number, in the order in which the runtime took components up: `unsigned long`.
inline const std::string kComponentId = "component.id";

}  // namespace detail::property_names
}  // namespace embedded_v1
}  // namespace cppmicroservices
