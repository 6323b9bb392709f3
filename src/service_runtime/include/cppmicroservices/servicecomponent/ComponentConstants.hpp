#pragma once

/// @file
/// Names of the properties that every component's service carries.

#include <string>

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace service {
namespace component {
namespace ComponentConstants {

/// The name of the component: `std::string`.
inline const std::string COMPONENT_NAME = "component.name";
/// The number of the component, in the order in which the runtime took them up: `unsigned long`.
inline const std::string COMPONENT_ID = "component.id";

}  // namespace ComponentConstants
}  // namespace component
}  // namespace service
}  // namespace embedded_v1
}  // namespace cppmicroservices
