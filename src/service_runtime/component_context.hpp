#pragma once

#include <map>
#include <mutex>
#include <string>
#include <unordered_map>

#include "cppmicroservices/servicecomponent/ComponentContext.hpp"

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace detail {

/// The context of one component instance. It holds the services bound to the instance until it is
/// made invalid.
class ComponentContextImpl final : public service::component::ComponentContext {
 public:
  /// Reference name -> the service bound to it.
  using BoundServices = std::map<std::string, InterfaceMapConstPtr>;

  ComponentContextImpl(AnyMap properties, BundleContext bundleContext, ServiceReferenceBase service,
                       BoundServices boundServices);

  /// Lets the bound services go; from now on every operation throws.
  void invalidate();

  std::unordered_map<std::string, Any> GetProperties() const override;
  BundleContext GetBundleContext() const override;
  ServiceReferenceBase GetServiceReference() const override;

 private:
  std::shared_ptr<void> LocateService(const std::string& referenceName,
                                      const std::string& interfaceId) const override;
  std::unique_lock<std::mutex> lockValid() const;

  const AnyMap properties_;
  const BundleContext bundleContext_;
  const ServiceReferenceBase service_;
  mutable std::mutex mutex_;
  bool valid_ = true;
  BoundServices boundServices_;
};

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
