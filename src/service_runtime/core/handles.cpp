// The handles that programs and bundles hold.

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "core/core.hpp"
#include "cppmicroservices/Bundle.h"
#include "cppmicroservices/BundleContext.h"
#include "cppmicroservices/Framework.h"
#include "cppmicroservices/FrameworkEvent.h"
#include "cppmicroservices/FrameworkFactory.h"
#include "cppmicroservices/ServiceReferenceBase.h"

namespace cppmicroservices {
inline namespace embedded_v1 {

namespace {

template <class T>
T& checked(const std::shared_ptr<T>& pointer) {
  if (!pointer) throw std::invalid_argument("the bundle handle is empty");
  return *pointer;
}

}  // namespace

Bundle::Bundle(std::shared_ptr<BundlePrivate> bundle, std::shared_ptr<CoreBundleContext> core)
    : d(std::move(bundle)), c(std::move(core)) {}

Bundle::State Bundle::GetState() const {
  return checked(c).state(*d);
}

std::string Bundle::GetSymbolicName() const {
  return checked(d).file.manifest.symbolicName;
}

BundleContext Bundle::GetBundleContext() const {
  return checked(c).context(*d);
}

void Bundle::Start() {
  checked(c).start(d);
}
void Bundle::Stop() {
  checked(c).stop(d);
}
void Bundle::Uninstall() {
  checked(c).uninstall(d);
}

FrameworkEvent Framework::WaitForStop(const std::chrono::milliseconds& timeout) {
  return c->waitForStop(timeout);
}

Framework FrameworkFactory::NewFramework() {
  auto core = CoreBundleContext::make();
  auto bundle = core->systemBundle();
  return {std::move(bundle), std::move(core)};
}

BundleContext::BundleContext(std::shared_ptr<BundleContextPrivate> context)
    : d(std::move(context)) {}

BundleContext::operator bool() const {
  return d && d->valid;
}

std::shared_ptr<CoreBundleContext> BundleContext::core() const {
  auto result = d && d->valid ? d->core.lock() : nullptr;
  if (!result) throw std::runtime_error("the bundle context is no longer valid");
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

std::shared_ptr<void> BundleContext::service(const ServiceReferenceBase& reference) {
  return ExtractInterface(core()->service(CoreBundleContext::record(reference)),
                          reference.GetInterfaceId());
}

void BundleContext::AddFrameworkListener(const FrameworkListener& listener) {
  core()->addListener(listener);
}

ServiceReferenceBase::ServiceReferenceBase(std::shared_ptr<ServiceRecord> record,
                                           std::string interfaceId)
    : record_(std::move(record)), interfaceId_(std::move(interfaceId)) {}

ServiceReferenceBase::operator bool() const {
  return record_ && record_->published;
}

void ServiceReferenceBase::bindTo(const std::string& interfaceId) {
  if (!record_) return;
  const auto& offered = record_->interfaces;
  if (std::find(offered.begin(), offered.end(), interfaceId) == offered.end()) {
    *this = ServiceReferenceBase();
  } else {
    interfaceId_ = interfaceId;
  }
}

Any ServiceReferenceBase::GetProperty(const std::string& key) const {
  if (!record_) return {};
  const auto property = record_->properties.find(key);
  return property == record_->properties.end() ? Any() : property->second;
}

Bundle ServiceReferenceBase::GetBundle() const {
  const auto bundle = *this ? record_->bundle.lock() : nullptr;
  const auto core = bundle ? bundle->core.lock() : nullptr;
  return core ? core->handle(bundle) : Bundle();
}

}  // namespace embedded_v1
}  // namespace cppmicroservices
