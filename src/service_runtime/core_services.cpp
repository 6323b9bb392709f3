// Publication, activation and release: the part of the framework that is about services.

#include <algorithm>
#include <stdexcept>

#include "core.hpp"
#include "cppmicroservices/Constants.h"
#include "cppmicroservices/LDAPFilter.h"

namespace cppmicroservices {
inline namespace embedded_v1 {

using detail::Component;
using detail::ComponentContextImpl;
using detail::ComponentInstance;
using detail::ReferenceDescription;

namespace {

/// The order of preference: the higher rank first, then what was published first.
bool isBetter(const std::shared_ptr<ServiceRecord>& left,
              const std::shared_ptr<ServiceRecord>& right) {
  return left->ranking != right->ranking ? left->ranking > right->ranking : left->id < right->id;
}

}  // namespace

std::vector<std::shared_ptr<ServiceRecord>> CoreBundleContext::services(
    const std::string& interfaceId, const std::string& filter) const {
  LDAPFilter parsed;
  if (!filter.empty()) parsed = LDAPFilter(filter);
  std::vector<std::shared_ptr<ServiceRecord>> found;
  const Lock lock(mutex_);
  for (const auto& record : services_) {
    const auto& interfaces = record->interfaces;
    const bool offers = interfaceId.empty() || std::find(interfaces.begin(), interfaces.end(),
                                                         interfaceId) != interfaces.end();
    if (offers && (!parsed || parsed.Match(record->properties))) found.push_back(record);
  }
  std::sort(found.begin(), found.end(), isBetter);
  return found;
}

std::vector<std::shared_ptr<ServiceRecord>> CoreBundleContext::servicesOf(
    const BundlePrivate& bundle) const {
  std::vector<std::shared_ptr<ServiceRecord>> found;
  const Lock lock(mutex_);
  std::copy_if(services_.begin(), services_.end(), std::back_inserter(found),
               [&](const auto& record) { return record->bundle.lock().get() == &bundle; });
  return found;
}

InterfaceMapConstPtr CoreBundleContext::service(const std::shared_ptr<ServiceRecord>& record) {
  Events events;
  InterfaceMapConstPtr result = serviceOf(record, events);
  dispatch(events);
  return result;
}

std::shared_ptr<ServiceRecord> CoreBundleContext::publish(
    const std::shared_ptr<BundlePrivate>& bundle, std::vector<std::string> interfaces,
    AnyMap properties) {
  auto record = std::make_shared<ServiceRecord>();
  record->id = nextServiceId_++;
  record->interfaces = std::move(interfaces);
  record->properties = std::move(properties);
  record->properties[Constants::OBJECTCLASS] = record->interfaces;
  record->properties[Constants::SERVICE_ID] = record->id;
  const auto ranking = record->properties.find(Constants::SERVICE_RANKING);
  if (ranking != record->properties.end()) record->ranking = any_cast<int>(ranking->second);
  record->core = self_;
  record->bundle = bundle;
  record->published = true;
  services_.push_back(record);
  return record;
}

std::shared_ptr<ServiceRecord> CoreBundleContext::bestMatch(
    const ReferenceDescription& reference) const {
  std::shared_ptr<ServiceRecord> best;
  for (const auto& record : services_) {
    if (reference.filter.matches(record->properties, /*matchCase=*/false) &&
        (!best || isBetter(record, best))) {
      best = record;
    }
  }
  return best;
}

std::vector<CoreBundleContext::ComponentPtr> CoreBundleContext::startedComponents() const {
  std::vector<ComponentPtr> result;
  for (const auto& bundle : bundles_) {
    if (bundle->state != Bundle::STATE_ACTIVE) continue;
    result.insert(result.end(), bundle->components.begin(), bundle->components.end());
  }
  std::sort(result.begin(), result.end(),
            [](const auto& left, const auto& right) { return left->id < right->id; });
  return result;
}

void CoreBundleContext::publishSatisfied() {
  const std::vector<ComponentPtr> components = startedComponents();
  for (bool again = true; again;) {
    again = false;
    for (const ComponentPtr& component : components) {
      if (component->record) continue;
      std::vector<std::shared_ptr<ServiceRecord>> bound;
      for (const ReferenceDescription& reference : component->description.references) {
        auto match = bestMatch(reference);
        if (!match) break;
        bound.push_back(std::move(match));
      }
      if (bound.size() < component->description.references.size()) continue;
      component->bound = std::move(bound);
      component->record = publish(component->bundle.lock(), component->description.interfaces,
                                  component->properties);
      component->record->component = component;
      again = true;
    }
  }
}

void CoreBundleContext::withdraw(const ComponentPtr& component,
                                 std::vector<ComponentPtr>& withdrawn) {
  const auto record = std::move(component->record);
  component->record.reset();
  if (!record) return;
  record->published = false;
  services_.erase(std::remove(services_.begin(), services_.end(), record), services_.end());
  // Those that use the service go before it, those of the same bundle too.
  for (const auto& bundle : bundles_) {
    for (const ComponentPtr& user : bundle->components) {
      if (std::find(user->bound.begin(), user->bound.end(), record) != user->bound.end()) {
        withdraw(user, withdrawn);
      }
    }
  }
  component->bound.clear();
  withdrawn.push_back(component);
}

bool CoreBundleContext::wouldWaitForMe(std::thread::id other) const {
  const auto me = std::this_thread::get_id();
  for (;;) {
    if (other == me) return true;
    const auto waiting = waitingForInstance_.find(other);
    if (waiting == waitingForInstance_.end()) break;
    other = waiting->second->activating;
    if (other == std::thread::id()) return false;
  }
  return lifecycleThread_ == me && waitingForLifecycle_.count(other) != 0;
}

bool CoreBundleContext::awaitActivation(Lock& lock, const Component& component) {
  const auto me = std::this_thread::get_id();
  const auto finished = [&] { return component.activating == std::thread::id(); };
  while (!finished()) {
    if (wouldWaitForMe(component.activating)) return false;
    waitingForInstance_[me] = &component;
    changed_.notify_all();
    changed_.wait(lock);
    waitingForInstance_.erase(me);
  }
  return true;
}

void CoreBundleContext::release(const std::vector<ComponentPtr>& withdrawn, Events& events) {
  for (const ComponentPtr& component : withdrawn) {
    std::shared_ptr<ComponentInstance> instance;
    {
      Lock lock(mutex_);
      // A thread that is just making an instance finds that it is not wanted any more, and frees
      // it.
      awaitActivation(lock, *component);
      instance.swap(component->instance);
    }
    if (!instance) continue;
    const std::string problem = instance->deactivate();
    if (!problem.empty()) report(events, FrameworkEvent::FRAMEWORK_WARNING, *component, problem);
  }
}

InterfaceMapConstPtr CoreBundleContext::serviceOf(const std::shared_ptr<ServiceRecord>& record,
                                                  Events& events) {
  if (record->object) return record->published ? record->object : nullptr;
  const ComponentPtr component = record->component.lock();
  if (!component) return nullptr;

  Lock lock(mutex_);
  for (;;) {
    if (component->record != record) return nullptr;
    if (component->instance) return component->instance->services();
    if (component->activating == std::thread::id()) break;
    if (!awaitActivation(lock, *component)) {
      report(events, FrameworkEvent::FRAMEWORK_ERROR, *component,
             "its service is asked for by what its instance is waiting for");
      return nullptr;
    }
  }
  component->activating = std::this_thread::get_id();
  const auto bound = component->bound;
  lock.unlock();

  std::shared_ptr<ComponentInstance> instance = activate(*component, record, bound, events);

  lock.lock();
  InterfaceMapConstPtr services;
  if (instance && component->record == record) {
    component->instance = std::move(instance);
    services = component->instance->services();
  } else if (instance) {
    // The component was withdrawn meanwhile; who withdrew it waits for this to end.
    lock.unlock();
    const std::string problem = instance->deactivate();
    if (!problem.empty()) report(events, FrameworkEvent::FRAMEWORK_WARNING, *component, problem);
    instance.reset();
    lock.lock();
  }
  component->activating = std::thread::id();
  changed_.notify_all();
  return services;
}

std::shared_ptr<ComponentInstance> CoreBundleContext::activate(
    const Component& component, const std::shared_ptr<ServiceRecord>& record,
    const std::vector<std::shared_ptr<ServiceRecord>>& bound, Events& events) {
  try {
    ComponentContextImpl::BoundServices services;
    for (std::size_t i = 0; i < bound.size(); ++i) {
      const std::string& name = component.description.references[i].name;
      auto service = serviceOf(bound[i], events);
      if (!service) {
        throw std::runtime_error("reference " + name + ": its service cannot be had");
      }
      services.emplace(name, std::move(service));
    }
    const auto bundle = component.bundle.lock();
    auto context = std::make_shared<ComponentContextImpl>(
        component.properties, bundle ? this->context(*bundle) : BundleContext(),
        reference(record, std::string()), std::move(services));
    return std::make_shared<ComponentInstance>(
        component.entryPoints, component.description.interfaces, std::move(context));
  } catch (const std::runtime_error& error) {
    report(events, FrameworkEvent::FRAMEWORK_ERROR, component, error.what());
    return nullptr;
  }
}

}  // namespace embedded_v1
}  // namespace cppmicroservices
