#include "support/all_builders.hpp"

#include <memory>
#include <stdexcept>
#include <type_traits>

#include "controls/control_builders.hpp"
#include "widgets/task_builders.hpp"

namespace test_support {

namespace {

using reference_host::importer::NamedBuilder;

/// A component of the manifest.
template <typename Class>
struct Component {
  using Implementation = Class;
  std::string path;  ///< the qualified name of the class
};

std::vector<BuilderService> makeServices() {
  using Task = tessel::build::json::widgets::LumoTaskIntegratedInlineNodeBuilderImpl;
  const auto task = std::make_shared<Task>();
  std::vector<BuilderService> services;
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
    services.push_back({component.path.substr(component.path.rfind(':') + 1), service});
  };
#include "manifest_components.inc"
  return services;
}

}  // namespace

const std::vector<BuilderService>& allBuilderServices() {
  static const std::vector<BuilderService> all = makeServices();
  return all;
}

const std::vector<NamedBuilder>& allBuilders() {
  static const std::vector<NamedBuilder> all = [] {
    std::vector<NamedBuilder> named;
    for (const BuilderService& each : allBuilderServices()) {
      named.emplace_back(each.name, each.service);
    }
    return named;
  }();
  return all;
}

const NamedBuilder& builderOf(const std::string& name) {
  for (const NamedBuilder& builder : allBuilders()) {
    if (builder.name() == name) return builder;
  }
  throw std::invalid_argument("there is no builder " + name);
}

}  // namespace test_support
