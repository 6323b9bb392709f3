#pragma once

/// @file
/// The handle of a published service, for one interface.

#include <type_traits>

#include "cppmicroservices/ServiceInterface.h"
#include "cppmicroservices/ServiceReferenceBase.h"

namespace cppmicroservices {
inline namespace embedded_v1 {

/// A handle of a service for its interface `S`; `void` stands for the service as a whole.
template <class S>
class ServiceReference : public ServiceReferenceBase {
 public:
  ServiceReference() = default;
  /// Empty if the service of `base` is not published under `S`.
  ServiceReference(const ServiceReferenceBase& base)  // NOLINT(google-explicit-constructor)
      : ServiceReferenceBase(base) {
    if constexpr (!std::is_void_v<S>) bindTo(us_service_interface_iid<S>());
  }
};

using ServiceReferenceU = ServiceReference<void>;

}  // namespace embedded_v1
}  // namespace cppmicroservices
