#pragma once

#include <map>
#include <mutex>
#include <string>

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

  explicit ComponentContextImpl(BoundServices boundServices);

  /// Lets the bound services go; from now on every operation throws.
  void invalidate();

 private:
  std::shared_ptr<void> LocateService(const std::string& referenceName,
                                      const std::string& interfaceId) const override;

  mutable std::mutex mutex_;
  bool valid_ = true;
  BoundServices boundServices_;
};

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
