#pragma once

/// @file
/// The handle of a published service, for one interface.

#include <cstddef>
#include <functional>

#include "cppmicroservices/ServiceInterface.h"
#include "cppmicroservices/ServiceReferenceBase.h"

namespace cppmicroservices {
inline namespace embedded_v1 {

/// A handle of a service for its interface `S`; `void` stands for the service as a whole.
template <class S>
class ServiceReference : public ServiceReferenceBase {
 public:
  using ServiceType = S;

  ServiceReference() = default;
  /// Empty if the service of `base` is not published under `S`.
  ServiceReference(const ServiceReferenceBase& base)  // NOLINT(google-explicit-constructor)
      : ServiceReferenceBase(base) {
    bindTo(us_service_interface_iid<S>());
  }

  using ServiceReferenceBase::operator=;
  using ServiceReferenceBase::operator==;
};

template <>
class ServiceReference<void> : public ServiceReferenceBase {
 public:
  using ServiceType = void;

  ServiceReference() = default;
  ServiceReference(const ServiceReferenceBase& base)  // NOLINT(google-explicit-constructor)
      : ServiceReferenceBase(base) {}

  using ServiceReferenceBase::operator=;
  using ServiceReferenceBase::operator==;
};

using ServiceReferenceU = ServiceReference<void>;

}  // namespace embedded_v1
}  // namespace cppmicroservices

namespace std {
template <class S>
struct hash<cppmicroservices::ServiceReference<S>> {
  std::size_t operator()(const cppmicroservices::ServiceReference<S>& reference) const {
    return reference.Hash();
  }
};
}  // namespace std
