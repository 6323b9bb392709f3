#include "core.hpp"

#include <algorithm>
#include <stdexcept>
#include <system_error>

#include "cppmicroservices/Constants.h"
#include "lifecycle.hpp"
#include "service_component_runtime.hpp"

namespace cppmicroservices {
inline namespace embedded_v1 {

namespace {

using detail::BundleFile;
using detail::SharedLibrary;

BundleFile systemBundleFile() {
  BundleFile file;
  file.manifest.symbolicName = Constants::SYSTEM_BUNDLE_SYMBOLICNAME;
  file.manifest.version = "0.0.0";
  file.manifest.headers = AnyMap(AnyMap::UNORDERED_MAP_CASEINSENSITIVE_KEYS,
                                 {{Constants::BUNDLE_SYMBOLICNAME, file.manifest.symbolicName}});
  return file;
}

[[noreturn]] void failUninstalled(const BundlePrivate& bundle) {
  throw std::logic_error(bundle.label() + ": is uninstalled");
}

}  // namespace

std::string BundlePrivate::setContext(BundleContextPrivate* value) const {
  if (!library) return {};
  const std::string name = "_us_set_bundle_context_instance_" + file.manifest.symbolicName;
  auto* const set = library->function<SetContextFunction>(name);
  if (!set) return {};
  return detail::guarded("calling " + name, [&] { set(value); });
}

CoreBundleContext::CoreBundleContext()
    : systemBundle_(std::make_shared<BundlePrivate>(0, Constants::SYSTEM_BUNDLE_LOCATION,
                                                    std::filesystem::path(), systemBundleFile())) {}

std::shared_ptr<CoreBundleContext> CoreBundleContext::make() {
  std::shared_ptr<CoreBundleContext> core(new CoreBundleContext);
  core->self_ = core;
  std::shared_ptr<CoreBundleContext> handles(core.get(), [core](CoreBundleContext*) mutable {
    try {
      core->stop(core->systemBundle_);
    } catch (const std::exception&) {
      // The last handle has gone: there is nobody left to tell.
    }
    core.reset();  // now, and not when the last std::weak_ptr goes
  });
  core->handles_ = handles;
  return handles;
}

Bundle CoreBundleContext::handle(const std::shared_ptr<BundlePrivate>& bundle) const {
  if (!bundle) return {};
  // When the last handle has gone, events still carry bundles; these share the framework itself.
  auto core = handles_.lock();
  return {bundle, core ? std::move(core) : self_.lock()};
}

ServiceReferenceBase CoreBundleContext::reference(const std::shared_ptr<ServiceRecord>& record,
                                                  const std::string& interfaceId) {
  return {record, interfaceId};
}

std::shared_ptr<ServiceRecord> CoreBundleContext::record(const ServiceReferenceBase& reference) {
  if (!reference.record_) throw std::invalid_argument("the service reference is empty");
  return reference.record_;
}

void CoreBundleContext::init() {
  const Lifecycle lifecycle(*this);
  const Lock lock(mutex_);
  if (systemBundle_->state == Bundle::STATE_STARTING ||
      systemBundle_->state == Bundle::STATE_ACTIVE) {
    return;
  }
  if (systemBundle_->state == Bundle::STATE_STOPPING) {
    throw std::logic_error("the framework is just being stopped");
  }
  systemBundle_->state = Bundle::STATE_STARTING;
  systemBundle_->context = std::make_shared<BundleContextPrivate>(self_, systemBundle_);
  const auto services = std::make_shared<InterfaceMap>();
  services->emplace(us_service_interface_iid<detail::ServiceComponentRuntime>(),
                    std::make_shared<detail::ServiceComponentRuntimeImpl>(self_));
  publish(systemBundle_, {services->begin()->first},
          AnyMap(AnyMap::UNORDERED_MAP_CASEINSENSITIVE_KEYS))
      ->object = services;
}

void CoreBundleContext::start(const std::shared_ptr<BundlePrivate>& bundle) {
  Events events;
  try {
    const Lifecycle lifecycle(*this);
    if (bundle == systemBundle_) {
      init();
      const Lock lock(mutex_);
      if (bundle->state == Bundle::STATE_ACTIVE) return;
      bundle->state = Bundle::STATE_ACTIVE;
      events.emplace_back(FrameworkEvent::FRAMEWORK_STARTED, handle(bundle), "framework started");
    } else {
      startBundle(bundle, events);
    }
  } catch (...) {
    dispatch(events);
    throw;
  }
  dispatch(events);
}

void CoreBundleContext::stop(const std::shared_ptr<BundlePrivate>& bundle) {
  Events events;
  {
    const Lifecycle lifecycle(*this);
    if (bundle == systemBundle_) {
      stopFramework(events);
    } else {
      stopBundle(bundle, events);
    }
  }
  dispatch(events);
}

void CoreBundleContext::uninstall(const std::shared_ptr<BundlePrivate>& bundle) {
  if (bundle == systemBundle_) {
    throw std::runtime_error("a framework cannot be uninstalled");
  }
  Events events;
  {
    const Lifecycle lifecycle(*this);
    uninstallBundle(bundle, events);
  }
  dispatch(events);
}

std::shared_ptr<BundlePrivate> CoreBundleContext::install(const std::string& location) {
  const Lifecycle lifecycle(*this);
  BundleFile file = detail::readBundleFile(location);
  std::filesystem::path path = std::filesystem::absolute(location);

  const Lock lock(mutex_);
  if (!systemBundle_->context) throw std::runtime_error("the framework is stopped");
  for (const auto& other : bundles_) {
    if (other->file.manifest.symbolicName != file.manifest.symbolicName) continue;
    std::error_code error;
    if (std::filesystem::equivalent(other->path, path, error)) return other;
    throw std::runtime_error(location + ": " + other->label() + " is installed already, from " +
                             other->location);
  }
  bundles_.push_back(
      std::make_shared<BundlePrivate>(nextBundleId_++, location, std::move(path), std::move(file)));
  return bundles_.back();
}

void CoreBundleContext::startBundle(const std::shared_ptr<BundlePrivate>& bundle, Events& events) {
  {
    const Lock lock(mutex_);
    if (bundle->state == Bundle::STATE_ACTIVE) return;
    if (bundle->state == Bundle::STATE_UNINSTALLED) failUninstalled(*bundle);
    if (bundle->state == Bundle::STATE_STARTING || bundle->state == Bundle::STATE_STOPPING) {
      throw std::logic_error(bundle->label() + ": is just being started or stopped");
    }
    bundle->state = Bundle::STATE_STARTING;
    bundle->context = std::make_shared<BundleContextPrivate>(self_, bundle);
  }
  std::vector<ComponentPtr> components;
  try {
    components = takeUpComponents(bundle, events);
  } catch (...) {
    const Lock lock(mutex_);
    bundle->context->valid = false;
    bundle->context.reset();
    bundle->state = Bundle::STATE_INSTALLED;
    throw;
  }
  const Lock lock(mutex_);
  bundle->components = std::move(components);
  bundle->state = Bundle::STATE_ACTIVE;
  publishSatisfied();
  reportCycles(*bundle, events);
}

std::vector<CoreBundleContext::ComponentPtr> CoreBundleContext::takeUpComponents(
    const std::shared_ptr<BundlePrivate>& bundle, Events& events) {
  if (!bundle->library) {
    // Only what was examined is loaded.
    if (detail::readBundleFile(bundle->location).manifestText != bundle->file.manifestText) {
      throw std::runtime_error(bundle->location + ": has changed since it was installed");
    }
    std::shared_ptr<SharedLibrary> library;
    try {
      library = std::make_shared<SharedLibrary>(bundle->path);
    } catch (const std::runtime_error& error) {
      throw std::runtime_error(bundle->location + ": " + error.what());
    }
    const Lock lock(mutex_);
    bundle->library = std::move(library);
  }
  const std::string problem = bundle->setContext(bundle->context.get());
  if (!problem.empty()) throw std::runtime_error(bundle->location + ": " + problem);

  std::vector<ComponentPtr> components;
  std::set<std::string> names;
  for (const auto& description : bundle->file.manifest.components) {
    const std::string label = bundle->label() + ", component " + description.name;
    if (!names.insert(description.name).second) {
      report(events, FrameworkEvent::FRAMEWORK_ERROR, bundle,
             label + ": another component before it has the same name; this one is not served");
      continue;
    }
    try {
      detail::EntryPoints entryPoints(bundle->library, description.implementationClass);
      const Lock lock(mutex_);
      components.push_back(std::make_shared<detail::Component>(description, nextComponentId_++,
                                                               bundle, std::move(entryPoints)));
    } catch (const std::runtime_error& error) {
      report(events, FrameworkEvent::FRAMEWORK_ERROR, bundle, label + ": " + error.what());
    }
  }
  return components;
}

void CoreBundleContext::stopBundle(const std::shared_ptr<BundlePrivate>& bundle, Events& events) {
  std::vector<ComponentPtr> withdrawn;
  {
    const Lock lock(mutex_);
    if (bundle->state == Bundle::STATE_UNINSTALLED) failUninstalled(*bundle);
    if (bundle->state == Bundle::STATE_STARTING || bundle->state == Bundle::STATE_STOPPING) {
      throw std::logic_error(bundle->label() + ": is just being started or stopped");
    }
    if (bundle->state != Bundle::STATE_ACTIVE) return;
    bundle->state = Bundle::STATE_STOPPING;
    const auto components = bundle->components;
    for (auto component = components.rbegin(); component != components.rend(); ++component) {
      withdraw(*component, withdrawn);
    }
  }
  release(withdrawn, events);
  withdrawn.clear();
  const std::string problem = bundle->setContext(nullptr);
  if (!problem.empty()) {
    report(events, FrameworkEvent::FRAMEWORK_WARNING, bundle, bundle->label() + ": " + problem);
  }

  std::vector<ComponentPtr> components;  // destroyed after the lock is given back
  const Lock lock(mutex_);
  bundle->components.swap(components);
  bundle->context->valid = false;
  bundle->context.reset();
  bundle->state = Bundle::STATE_RESOLVED;
  publishSatisfied();  // others may turn to services that are left
}

void CoreBundleContext::uninstallBundle(const std::shared_ptr<BundlePrivate>& bundle,
                                        Events& events) {
  stopBundle(bundle, events);
  std::shared_ptr<SharedLibrary> library;  // destroyed after the lock is given back
  const Lock lock(mutex_);
  library.swap(bundle->library);
  bundle->state = Bundle::STATE_UNINSTALLED;
  bundles_.erase(std::remove(bundles_.begin(), bundles_.end(), bundle), bundles_.end());
}

void CoreBundleContext::stopFramework(Events& events) {
  std::vector<std::shared_ptr<BundlePrivate>> all;
  {
    const Lock lock(mutex_);
    if (systemBundle_->state != Bundle::STATE_STARTING &&
        systemBundle_->state != Bundle::STATE_ACTIVE) {
      return;
    }
    all = bundles_;
    for (const auto& bundle : all) {
      if (bundle->state == Bundle::STATE_STARTING || bundle->state == Bundle::STATE_STOPPING) {
        throw std::logic_error(bundle->label() + ": is just being started or stopped");
      }
    }
    systemBundle_->state = Bundle::STATE_STOPPING;
  }
  for (auto bundle = all.rbegin(); bundle != all.rend(); ++bundle) {
    uninstallBundle(*bundle, events);
  }
  all.clear();
  std::vector<std::shared_ptr<ServiceRecord>> own;  // destroyed after the lock is given back
  const Lock lock(mutex_);
  own.swap(services_);
  for (const auto& record : own) record->published = false;
  systemBundle_->context->valid = false;
  systemBundle_->context.reset();
  systemBundle_->state = Bundle::STATE_RESOLVED;
  events.emplace_back(FrameworkEvent::FRAMEWORK_STOPPED, handle(systemBundle_),
                      "framework stopped");
  changed_.notify_all();
}

FrameworkEvent CoreBundleContext::waitForStop(const std::chrono::milliseconds& timeout) {
  const auto stopped = [this] {
    return systemBundle_->state == Bundle::STATE_INSTALLED ||
           systemBundle_->state == Bundle::STATE_RESOLVED;
  };
  bool inTime = true;
  {
    Lock lock(mutex_);
    if (timeout == std::chrono::milliseconds::zero()) {
      changed_.wait(lock, stopped);
    } else {
      inTime = changed_.wait_for(lock, timeout, stopped);
    }
  }
  return inTime ? FrameworkEvent(FrameworkEvent::FRAMEWORK_STOPPED, handle(systemBundle_),
                                 "framework stopped")
                : FrameworkEvent(FrameworkEvent::FRAMEWORK_WAIT_TIMEDOUT, handle(systemBundle_),
                                 "the framework did not stop in time");
}

std::vector<std::shared_ptr<BundlePrivate>> CoreBundleContext::bundlesLocked() const {
  std::vector<std::shared_ptr<BundlePrivate>> result{systemBundle_};
  result.insert(result.end(), bundles_.begin(), bundles_.end());
  return result;
}

std::vector<std::shared_ptr<BundlePrivate>> CoreBundleContext::bundles() const {
  const Lock lock(mutex_);
  return bundlesLocked();
}

Bundle::State CoreBundleContext::state(const BundlePrivate& bundle) const {
  const Lock lock(mutex_);
  return bundle.state;
}

BundleContext CoreBundleContext::context(const BundlePrivate& bundle) const {
  const Lock lock(mutex_);
  return BundleContext(bundle.context);
}

ListenerToken CoreBundleContext::addListener(const FrameworkListener& listener) {
  const Lock lock(mutex_);
  const ListenerTokenId id = nextListenerId_++;
  listeners_.emplace(id, listener);
  return ListenerToken(id);
}

void CoreBundleContext::removeListener(const ListenerToken& token) {
  FrameworkListener removed;  // destroyed after the lock is given back
  const Lock lock(mutex_);
  const auto entry = listeners_.find(token.id_);
  if (entry == listeners_.end()) return;
  removed.swap(entry->second);
  listeners_.erase(entry);
}

void CoreBundleContext::report(Events& events, FrameworkEvent::Type type,
                               const std::shared_ptr<BundlePrivate>& bundle,
                               const std::string& message) const {
  events.emplace_back(type, handle(bundle), message,
                      std::make_exception_ptr(std::runtime_error(message)));
}

void CoreBundleContext::report(Events& events, FrameworkEvent::Type type,
                               const detail::Component& component,
                               const std::string& problem) const {
  const auto bundle = component.bundle.lock();
  if (!bundle) return;
  report(events, type, bundle,
         bundle->label() + ", component " + component.description.name + ": " + problem);
}

void CoreBundleContext::dispatch(const Events& events) {
  for (const FrameworkEvent& event : events) {
    std::vector<FrameworkListener> listeners;
    {
      const Lock lock(mutex_);
      for (const auto& [id, listener] : listeners_) listeners.push_back(listener);
    }
    for (const FrameworkListener& listener : listeners) {
      try {
        listener(event);
      } catch (...) {
        // A listener's own failure is nobody else's.
      }
    }
  }
}

}  // namespace embedded_v1
}  // namespace cppmicroservices
