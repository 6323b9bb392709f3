#include "cppmicroservices/BundleContext.h"

#include <stdexcept>
#include <utility>

#include "core.hpp"

namespace cppmicroservices {
inline namespace embedded_v1 {

BundleContext::BundleContext(std::shared_ptr<BundleContextPrivate> context)
    : d(std::move(context)) {}

BundleContext::operator bool() const {
  return d && d->valid;
}

BundleContext& BundleContext::operator=(std::nullptr_t) {
  d.reset();
  return *this;
}

std::shared_ptr<CoreBundleContext> BundleContext::core() const {
  auto result = d && d->valid ? d->core.lock() : nullptr;
  if (!result) throw std::runtime_error("the bundle context is no longer valid");
  return result;
}

Bundle BundleContext::GetBundle() const {
  return core()->handle(d->bundle.lock());
}

Bundle BundleContext::GetBundle(long id) const {
  const auto framework = core();
  for (const auto& bundle : framework->bundles()) {
    if (bundle->id == id) return framework->handle(bundle);
  }
  return {};
}

std::vector<Bundle> BundleContext::GetBundles() const {
  const auto framework = core();
  std::vector<Bundle> result;
  for (const auto& bundle : framework->bundles()) result.push_back(framework->handle(bundle));
  return result;
}

std::vector<Bundle> BundleContext::InstallBundles(const std::string& location) {
  const auto framework = core();
  return {framework->handle(framework->install(location))};
}

std::vector<ServiceReferenceU> BundleContext::GetServiceReferences(const std::string& clazz,
                                                                   const std::string& filter) {
  std::vector<ServiceReferenceU> result;
  for (const auto& record : core()->services(clazz, filter)) {
    result.emplace_back(CoreBundleContext::reference(record, clazz));
  }
  return result;
}

ServiceReferenceU BundleContext::GetServiceReference(const std::string& clazz) {
  const auto found = core()->services(clazz, std::string());
  return found.empty() ? ServiceReferenceU()
                       : ServiceReferenceU(CoreBundleContext::reference(found.front(), clazz));
}

std::shared_ptr<void> BundleContext::GetService(const ServiceReferenceBase& reference) {
  return ExtractInterface(GetService(ServiceReferenceU(reference)), reference.GetInterfaceId());
}

InterfaceMapConstPtr BundleContext::GetService(const ServiceReferenceU& reference) {
  return core()->service(CoreBundleContext::record(reference));
}

ListenerToken BundleContext::AddFrameworkListener(const FrameworkListener& listener) {
  return core()->addListener(listener);
}

void BundleContext::RemoveListener(ListenerToken token) {
  core()->removeListener(token);
}

}  // namespace embedded_v1
}  // namespace cppmicroservices
