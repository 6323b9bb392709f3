#include "core/component_context.hpp"

#include <stdexcept>
#include <utility>

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace detail {

ComponentContextImpl::ComponentContextImpl(BoundServices boundServices)
    : boundServices_(std::move(boundServices)) {}

void ComponentContextImpl::invalidate() {
  BoundServices released;  // destroyed after the lock is given back: that may run a bundle's code
  const std::lock_guard lock(mutex_);
  valid_ = false;
  released.swap(boundServices_);
}

std::shared_ptr<void> ComponentContextImpl::LocateService(const std::string& referenceName,
                                                          const std::string& interfaceId) const {
  const std::lock_guard lock(mutex_);
  if (!valid_) throw std::runtime_error("the component's context is no longer valid");
  const auto bound = boundServices_.find(referenceName);
  return bound == boundServices_.end() ? nullptr : ExtractInterface(bound->second, interfaceId);
}

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
