#include "service_component_runtime.hpp"

#include <algorithm>
#include <utility>

#include "core.hpp"

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace detail {

using service::component::runtime::dto::ComponentConfigurationDTO;
using service::component::runtime::dto::ComponentDescriptionDTO;

ServiceComponentRuntimeImpl::ServiceComponentRuntimeImpl(std::weak_ptr<CoreBundleContext> core)
    : core_(std::move(core)) {}

std::vector<ComponentDescriptionDTO> ServiceComponentRuntimeImpl::GetComponentDescriptionDTOs(
    const std::vector<Bundle>& bundles) const {
  std::vector<ComponentDescriptionDTO> result;
  const auto core = core_.lock();
  if (!core) return result;
  for (const auto& view : core->components()) {
    const bool asked =
        bundles.empty() || std::any_of(bundles.begin(), bundles.end(), [&](const Bundle& bundle) {
          return bundle &&
                 static_cast<unsigned long>(bundle.GetBundleId()) == view.description.bundle.id;
        });
    if (asked) result.push_back(view.description);
  }
  return result;
}

ComponentDescriptionDTO ServiceComponentRuntimeImpl::GetComponentDescriptionDTO(
    const Bundle& bundle, const std::string& name) const {
  for (const auto& description : GetComponentDescriptionDTOs({bundle})) {
    if (description.name == name) return description;
  }
  return {};
}

std::vector<ComponentConfigurationDTO> ServiceComponentRuntimeImpl::GetComponentConfigurationDTOs(
    const ComponentDescriptionDTO& description) const {
  std::vector<ComponentConfigurationDTO> result;
  const auto core = core_.lock();
  if (!core) return result;
  for (auto& view : core->components()) {
    if (view.description.bundle.id == description.bundle.id &&
        view.description.name == description.name) {
      result.push_back(std::move(view));
    }
  }
  return result;
}

bool ServiceComponentRuntimeImpl::IsComponentEnabled(
    const ComponentDescriptionDTO& description) const {
  return !GetComponentConfigurationDTOs(description).empty();
}

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
