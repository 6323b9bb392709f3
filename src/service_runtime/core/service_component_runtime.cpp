#include "core/service_component_runtime.hpp"

#include <algorithm>
#include <utility>

#include "core/core.hpp"

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace detail {

namespace dto = service::component::runtime::dto;

namespace {

dto::ComponentDescriptionDTO describe(const Component& component, const BundlePrivate& bundle) {
  const ComponentDescription& given = component.description;
  dto::ComponentDescriptionDTO result;
  result.name = given.name;
  result.bundle.id = bundle.id;
  result.serviceInterfaces = given.interfaces;
  result.properties = {given.properties.begin(), given.properties.end()};
  for (const ReferenceDescription& reference : given.references) {
    result.references.push_back({reference.name, reference.interfaceName, reference.target});
  }
  return result;
}

}  // namespace

ServiceComponentRuntimeImpl::ServiceComponentRuntimeImpl(std::weak_ptr<CoreBundleContext> core)
    : core_(std::move(core)) {}

std::vector<dto::ComponentDescriptionDTO> ServiceComponentRuntimeImpl::GetComponentDescriptionDTOs(
    const std::vector<Bundle>& bundles) const {
  std::vector<dto::ComponentDescriptionDTO> result;
  const auto core = core_.lock();
  if (!core) return result;
  core->forEachComponent(
      [&](const Component& component, const std::shared_ptr<BundlePrivate>& bundle) {
        const auto isThis = [&](const Bundle& asked) {
          return CoreBundleContext::bundleOf(asked) == bundle;
        };
        if (bundles.empty() || std::any_of(bundles.begin(), bundles.end(), isThis))
          result.push_back(describe(component, *bundle));
      });
  return result;
}

std::vector<dto::ComponentConfigurationDTO>
ServiceComponentRuntimeImpl::GetComponentConfigurationDTOs(
    const dto::ComponentDescriptionDTO& description) const {
  std::vector<dto::ComponentConfigurationDTO> result;
  const auto core = core_.lock();
  if (!core) return result;
  core->forEachComponent(
      [&](const Component& component, const std::shared_ptr<BundlePrivate>& bundle) {
        if (bundle->id != description.bundle.id || component.description.name != description.name) {
          return;
        }
        dto::ComponentConfigurationDTO found;
        found.description = describe(component, *bundle);
        found.id = component.id;
        found.state = !component.record    ? dto::ComponentState::UNSATISFIED_REFERENCE
                      : component.instance ? dto::ComponentState::ACTIVE
                                           : dto::ComponentState::SATISFIED;
        if (!component.record) {
          for (const ReferenceDescription& reference : component.description.references) {
            if (core->registry().best(reference.filter)) continue;
            found.unsatisfiedReferences.push_back({reference.name, reference.target});
          }
        }
        result.push_back(std::move(found));
      });
  return result;
}

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
