#pragma once

#include <memory>
#include <vector>

#include "cppmicroservices/servicecomponent/runtime/ServiceComponentRuntime.hpp"

namespace cppmicroservices {
inline namespace embedded_v1 {

class CoreBundleContext;

namespace detail {

using service::component::runtime::ServiceComponentRuntime;

/// The framework's own service.
class ServiceComponentRuntimeImpl final : public ServiceComponentRuntime {
 public:
  explicit ServiceComponentRuntimeImpl(std::weak_ptr<CoreBundleContext> core);

  std::vector<service::component::runtime::dto::ComponentDescriptionDTO>
  GetComponentDescriptionDTOs(const std::vector<Bundle>& bundles) const override;
  std::vector<service::component::runtime::dto::ComponentConfigurationDTO>
  GetComponentConfigurationDTOs(
      const service::component::runtime::dto::ComponentDescriptionDTO& description) const override;

 private:
  const std::weak_ptr<CoreBundleContext> core_;
};

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
