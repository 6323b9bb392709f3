#pragma once

/// @file
/// The exception of Declarative Services.

#include <stdexcept>

#include "cppmicroservices/servicecomponent/ServiceComponentExport.h"

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace service {
namespace component {

/// Says what is wrong with a component.
class ComponentException final : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace component
}  // namespace service
}  // namespace embedded_v1
}  // namespace cppmicroservices
