// Using a service and letting it go: what makes and frees the instances of components.

#include <stdexcept>

#include "core/core.hpp"

namespace cppmicroservices {
inline namespace embedded_v1 {

using detail::Component;
using detail::ComponentContextImpl;
using detail::ComponentInstance;

InterfaceMapConstPtr CoreBundleContext::service(const std::shared_ptr<ServiceRecord>& record) {
  Events events;
  InterfaceMapConstPtr result = serviceOf(record, events);
  dispatch(events);
  return result;
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
    if (instance) end(*instance, *component, events);
  }
}

void CoreBundleContext::end(ComponentInstance& instance, const Component& component,
                            Events& events) const {
  for (const std::string& problem : instance.end()) {
    report(events, FrameworkEvent::FRAMEWORK_WARNING, component, problem);
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

  std::shared_ptr<ComponentInstance> instance = activate(*component, bound, events);

  lock.lock();
  InterfaceMapConstPtr services;
  if (instance && component->record == record) {
    component->instance = std::move(instance);
    services = component->instance->services();
  } else if (instance) {
    // The component was withdrawn meanwhile; who withdrew it waits for this to end.
    lock.unlock();
    end(*instance, *component, events);
    instance.reset();
    lock.lock();
  }
  component->activating = std::thread::id();
  changed_.notify_all();
  return services;
}

std::shared_ptr<ComponentInstance> CoreBundleContext::activate(
    const Component& component, const std::vector<std::shared_ptr<ServiceRecord>>& bound,
    Events& events) {
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
    return std::make_shared<ComponentInstance>(
        component.entryPoints, component.description.interfaces,
        std::make_shared<ComponentContextImpl>(std::move(services)));
  } catch (const std::runtime_error& error) {
    report(events, FrameworkEvent::FRAMEWORK_ERROR, component, error.what());
    return nullptr;
  }
}

}  // namespace embedded_v1
}  // namespace cppmicroservices
