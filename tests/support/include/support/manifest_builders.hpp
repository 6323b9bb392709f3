#pragma once

/// @file
/// An instance of each component of the manifest, for any host.

#include <memory>
#include <string>
#include <type_traits>

#include "controls/control_builders.hpp"
#include "widgets/task_builders.hpp"

namespace test_support {

/// A component of the manifest.
template <typename Class>
struct Component {
  using Implementation = Class;
  std::string path;  ///< the qualified name of the class
};

/// Calls `take` with the name of each class, without namespaces, and an instance of it, in the
/// manifest's order.
template <typename Take>
void makeBuilders(const Take& take) {
  using Task = tessel::build::json::widgets::LumoTaskIntegratedInlineNodeBuilderImpl;
  const auto task = std::make_shared<Task>();
  const auto visit = [&](const auto& component) {
    using Class = typename std::decay_t<decltype(component)>::Implementation;
    std::shared_ptr<Class> service;
    if constexpr (std::is_same_v<Class, Task>) {
      service = task;
    } else if constexpr (std::is_default_constructible_v<Class>) {
      service = std::make_shared<Class>();
    } else {
      service = std::make_shared<Class>(task);  // what the manifest's reference is bound to
    }
    take(component.path.substr(component.path.rfind(':') + 1), service);
  };
#include "manifest_components.inc"
}

}  // namespace test_support
