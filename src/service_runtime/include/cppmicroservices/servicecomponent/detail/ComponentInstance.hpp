#pragma once

/// @file
/// What the runtime sees of a component: the holder that the bundle's exported functions make and
/// free.

#include <memory>

#include "cppmicroservices/ServiceInterface.h"
#include "cppmicroservices/servicecomponent/ComponentContext.hpp"

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace service::component::detail {

/// The holder of one component's object. The runtime gets it from the bundle's exported
/// `NewInstance_` function and gives it back to `DeleteInstance_`; in between it calls the members
/// in the order in which they stand here, each once and never two at a time.
class ComponentInstance {
 public:
  virtual ~ComponentInstance() = default;

  /// Makes the object, with what its constructor takes from the context.
  virtual void CreateInstance(const std::shared_ptr<ComponentContext>& context) = 0;
  /// The object under its interface names.
  virtual InterfaceMapPtr GetInterfaceMap() = 0;
  /// Tells the object that it is in use, if it has a member `Activate` for that.
  virtual void Activate() = 0;
  /// Tells the object that its use is over, if it has a member `Deactivate` for that.
  virtual void Deactivate() = 0;
};

}  // namespace service::component::detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
