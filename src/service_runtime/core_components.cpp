// What the framework tells about components that are not published, and why.

#include <algorithm>

#include "core.hpp"
#include "cppmicroservices/Constants.h"

namespace cppmicroservices {
inline namespace embedded_v1 {

namespace dto = service::component::runtime::dto;

using detail::Component;
using detail::ReferenceDescription;

namespace {

std::unordered_map<std::string, Any> unordered(const AnyMap& values) {
  return {values.begin(), values.end()};
}

framework::dto::BundleDTO describe(const BundlePrivate& bundle) {
  framework::dto::BundleDTO result;
  result.id = static_cast<unsigned long>(bundle.id);
  result.state = bundle.state;
  result.symbolicName = bundle.file.manifest.symbolicName;
  result.version = bundle.file.manifest.version;
  return result;
}

framework::dto::ServiceReferenceDTO describe(const ServiceRecord& record) {
  framework::dto::ServiceReferenceDTO result;
  result.id = static_cast<unsigned long>(record.id);
  if (const auto bundle = record.bundle.lock()) {
    result.bundle = static_cast<unsigned long>(bundle->id);
  }
  result.properties = unordered(record.properties);
  return result;
}

dto::ComponentDescriptionDTO describe(const detail::ComponentDescription& component,
                                      const BundlePrivate& bundle) {
  dto::ComponentDescriptionDTO result;
  result.name = component.name;
  result.bundle = describe(bundle);
  result.scope = "singleton";
  result.implementationClass = component.implementationClass;
  result.defaultEnabled = true;
  result.serviceInterfaces = component.interfaces;
  result.properties = unordered(component.properties);
  for (const ReferenceDescription& reference : component.references) {
    result.references.push_back(
        {reference.name, reference.interfaceName, "1..1", "static", "reluctant", reference.target});
  }
  return result;
}

/// Looks for a way from a component's references back to the component, through components that are
/// not published either.
class CycleSearch {
 public:
  using ComponentPtr = std::shared_ptr<Component>;

  explicit CycleSearch(const std::vector<ComponentPtr>& components) {
    for (const ComponentPtr& component : components) {
      if (component->record) continue;
      AnyMap properties = component->properties;
      properties[Constants::OBJECTCLASS] = component->description.interfaces;
      waiting_.push_back({component.get(), std::move(properties)});
    }
  }

  /// The way, as text; empty if there is none.
  std::string from(const Component& start) {
    start_ = &start;
    seen_.clear();
    inCycle_.clear();
    return follow(start) ? start.description.name + way_ : std::string();
  }
  /// The components on the way found last.
  const std::set<const Component*>& inCycle() const { return inCycle_; }

 private:
  struct Waiting {
    const Component* component;
    AnyMap properties;
  };

  bool follow(const Component& component) {
    if (!seen_.insert(&component).second) return false;
    for (const ReferenceDescription& reference : component.description.references) {
      for (const Waiting& next : waiting_) {
        if (!reference.filter.matches(next.properties, /*matchCase=*/false)) continue;
        const bool isBack = next.component == start_;
        if (!isBack && !follow(*next.component)) continue;
        if (isBack) way_.clear();
        way_ = " (reference " + reference.name + ") -> " + next.component->description.name + way_;
        inCycle_.insert(&component);
        return true;
      }
    }
    return false;
  }

  std::vector<Waiting> waiting_;
  const Component* start_ = nullptr;
  std::set<const Component*> seen_;
  std::set<const Component*> inCycle_;
  std::string way_;
};

}  // namespace

void CoreBundleContext::reportCycles(const BundlePrivate& bundle, Events& events) const {
  CycleSearch search(startedComponents());
  std::set<const Component*> reported;
  for (const ComponentPtr& component : bundle.components) {
    if (component->record || reported.count(component.get()) != 0) continue;
    const std::string way = search.from(*component);
    if (way.empty()) continue;
    reported.insert(search.inCycle().begin(), search.inCycle().end());
    report(events, FrameworkEvent::FRAMEWORK_ERROR, *component,
           "its references lead back to itself: " + way);
  }
}

std::vector<CoreBundleContext::ComponentView> CoreBundleContext::components(
    const BundlePrivate* onlyOf) const {
  std::vector<ComponentView> result;
  const Lock lock(mutex_);
  for (const ComponentPtr& component : startedComponents()) {
    const auto bundle = component->bundle.lock();
    if (!bundle || (onlyOf && bundle.get() != onlyOf)) continue;
    ComponentView view;
    view.description = describe(component->description, *bundle);
    view.id = component->id;
    view.properties = unordered(component->properties);
    view.state = !component->record    ? dto::ComponentState::UNSATISFIED_REFERENCE
                 : component->instance ? dto::ComponentState::ACTIVE
                                       : dto::ComponentState::SATISFIED;
    const auto& references = component->description.references;
    for (std::size_t i = 0; i < references.size(); ++i) {
      const auto service = component->record ? component->bound[i] : bestMatch(references[i]);
      if (service) {
        view.satisfiedReferences.push_back(
            {references[i].name, references[i].target, {describe(*service)}});
      } else {
        view.unsatisfiedReferences.push_back({references[i].name, references[i].target, {}});
      }
    }
    result.push_back(std::move(view));
  }
  return result;
}

}  // namespace embedded_v1
}  // namespace cppmicroservices
