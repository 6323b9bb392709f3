#include "component_context.hpp"

#include <utility>

#include "cppmicroservices/servicecomponent/ComponentException.hpp"

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace detail {

using service::component::ComponentException;

ComponentContextImpl::ComponentContextImpl(AnyMap properties, BundleContext bundleContext,
                                           ServiceReferenceBase service,
                                           BoundServices boundServices)
    : properties_(std::move(properties)),
      bundleContext_(std::move(bundleContext)),
      service_(std::move(service)),
      boundServices_(std::move(boundServices)) {}

void ComponentContextImpl::invalidate() {
  BoundServices released;  // destroyed after the lock is given back: that may run a bundle's code
  const std::lock_guard lock(mutex_);
  valid_ = false;
  released.swap(boundServices_);
}

std::unique_lock<std::mutex> ComponentContextImpl::lockValid() const {
  std::unique_lock lock(mutex_);
  if (!valid_) throw ComponentException("the component's context is no longer valid");
  return lock;
}

std::unordered_map<std::string, Any> ComponentContextImpl::GetProperties() const {
  const auto lock = lockValid();
  return {properties_.begin(), properties_.end()};
}

BundleContext ComponentContextImpl::GetBundleContext() const {
  const auto lock = lockValid();
  return bundleContext_;
}

ServiceReferenceBase ComponentContextImpl::GetServiceReference() const {
  const auto lock = lockValid();
  return service_;
}

std::shared_ptr<void> ComponentContextImpl::LocateService(const std::string& referenceName,
                                                          const std::string& interfaceId) const {
  const auto lock = lockValid();
  const auto bound = boundServices_.find(referenceName);
  return bound == boundServices_.end() || interfaceId.empty()
             ? nullptr
             : ExtractInterface(bound->second, interfaceId);
}

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
