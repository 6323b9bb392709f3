#include "core/core.hpp"

#include <algorithm>
#include <stdexcept>
#include <system_error>

#include "core/lifecycle.hpp"
#include "core/service_component_runtime.hpp"

namespace cppmicroservices {
inline namespace embedded_v1 {

namespace {

using detail::BundleFile;
using detail::SharedLibrary;

BundleFile systemBundleFile() {
  BundleFile file;
  file.manifest.symbolicName = "system_bundle";
  return file;
}

/// What `step` gives; an error gets the location put before it.
template <class Step>
auto at(const std::string& location, Step step) {
  try {
    return step();
  } catch (const std::runtime_error& error) {
    throw std::runtime_error(location + ": " + error.what());
  }
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
    : systemBundle_(std::make_shared<BundlePrivate>(0, "System Bundle", std::filesystem::path(),
                                                    systemBundleFile())) {}

std::shared_ptr<CoreBundleContext> CoreBundleContext::make() {
  std::shared_ptr<CoreBundleContext> core(new CoreBundleContext);
  core->self_ = core;
  core->systemBundle_->core = core;
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

void CoreBundleContext::start(const std::shared_ptr<BundlePrivate>& bundle) {
  Events events;
  try {
    const Lifecycle lifecycle(*this);
    if (bundle == systemBundle_) {
      startFramework(events);
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
  // The current folder may be another one when the library is loaded.
  std::filesystem::path path = location;
  if (!path.empty()) path = std::filesystem::absolute(path);
  BundleFile file = at(location, [&] { return detail::readBundleFile(path); });

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
  bundles_.back()->core = self_;
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
    bundle->context = std::make_shared<BundleContextPrivate>(self_);
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
  registry_.publishSatisfied(waitingComponents());
  for (const auto& cycle : registry_.cycles(waitingComponents(), bundle)) {
    report(events, FrameworkEvent::FRAMEWORK_ERROR, *cycle.component,
           "its references lead back to itself: " + cycle.way);
  }
}

std::vector<CoreBundleContext::ComponentPtr> CoreBundleContext::takeUpComponents(
    const std::shared_ptr<BundlePrivate>& bundle, Events& events) {
  if (!bundle->library) {
    // Only what was examined is loaded.
    auto library = at(bundle->location, [&] {
      const detail::ManifestFile now = detail::readUnparsedManifest(bundle->path);
      if (now.text != bundle->file.manifestText ||
          now.folder != bundle->file.manifest.symbolicName) {
        throw std::runtime_error("has changed since it was installed");
      }
      return std::make_shared<SharedLibrary>(bundle->path);
    });
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
      events.emplace_back(
          FrameworkEvent::FRAMEWORK_ERROR,
          label + ": another component before it has the same name; this one is not served");
      continue;
    }
    try {
      detail::EntryPoints entryPoints(bundle->library, description.implementationClass);
      const Lock lock(mutex_);
      components.push_back(std::make_shared<detail::Component>(description, nextComponentId_++,
                                                               bundle, std::move(entryPoints)));
    } catch (const std::runtime_error& error) {
      events.emplace_back(FrameworkEvent::FRAMEWORK_ERROR, label + ": " + error.what());
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
      registry_.withdraw(*component, withdrawn);
    }
  }
  release(withdrawn, events);
  withdrawn.clear();
  const std::string problem = bundle->setContext(nullptr);
  if (!problem.empty()) {
    events.emplace_back(FrameworkEvent::FRAMEWORK_WARNING, bundle->label() + ": " + problem);
  }

  std::vector<ComponentPtr> components;  // destroyed after the lock is given back
  const Lock lock(mutex_);
  bundle->components.swap(components);
  bundle->context->valid = false;
  bundle->context.reset();
  bundle->state = Bundle::STATE_RESOLVED;
  registry_.publishSatisfied(waitingComponents());  // others may turn to services that are left
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

void CoreBundleContext::startFramework(Events& events) {
  const Lock lock(mutex_);
  if (systemBundle_->state == Bundle::STATE_ACTIVE) return;
  if (systemBundle_->state == Bundle::STATE_STOPPING) {
    throw std::logic_error("the framework is just being stopped");
  }
  systemBundle_->context = std::make_shared<BundleContextPrivate>(self_);
  const auto services = std::make_shared<InterfaceMap>();
  const std::string& name = us_service_interface_iid<detail::ServiceComponentRuntime>();
  services->emplace(name, std::make_shared<detail::ServiceComponentRuntimeImpl>(self_));
  registry_.publish(systemBundle_, {name}, AnyMap())->object = services;
  systemBundle_->state = Bundle::STATE_ACTIVE;
  events.emplace_back(FrameworkEvent::FRAMEWORK_STARTED, "framework started");
}

void CoreBundleContext::stopFramework(Events& events) {
  std::vector<std::shared_ptr<BundlePrivate>> all;
  {
    const Lock lock(mutex_);
    if (systemBundle_->state != Bundle::STATE_ACTIVE) return;
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
  const Lock lock(mutex_);
  registry_.clear();  // what is left is the framework's own
  systemBundle_->context->valid = false;
  systemBundle_->context.reset();
  systemBundle_->state = Bundle::STATE_RESOLVED;
  events.emplace_back(FrameworkEvent::FRAMEWORK_STOPPED, "framework stopped");
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
  return inTime ? FrameworkEvent(FrameworkEvent::FRAMEWORK_STOPPED, "framework stopped")
                : FrameworkEvent(FrameworkEvent::FRAMEWORK_WAIT_TIMEDOUT,
                                 "the framework did not stop in time");
}

Bundle::State CoreBundleContext::state(const BundlePrivate& bundle) const {
  const Lock lock(mutex_);
  return bundle.state;
}

BundleContext CoreBundleContext::context(const BundlePrivate& bundle) const {
  const Lock lock(mutex_);
  return BundleContext(bundle.context);
}

std::vector<std::shared_ptr<ServiceRecord>> CoreBundleContext::services(
    const std::string& interfaceId, const std::string& filter) const {
  const auto expression = detail::LdapExpression::offering(interfaceId, filter);
  const Lock lock(mutex_);
  return registry_.matching(expression);
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

std::vector<CoreBundleContext::ComponentPtr> CoreBundleContext::waitingComponents() const {
  std::vector<ComponentPtr> result = startedComponents();
  result.erase(std::remove_if(result.begin(), result.end(),
                              [](const ComponentPtr& component) { return component->record; }),
               result.end());
  return result;
}

void CoreBundleContext::forEachComponent(
    const std::function<void(const detail::Component&, const std::shared_ptr<BundlePrivate>&)>&
        visit) const {
  const Lock lock(mutex_);
  for (const ComponentPtr& component : startedComponents()) {
    if (const auto bundle = component->bundle.lock()) visit(*component, bundle);
  }
}

void CoreBundleContext::addListener(const FrameworkListener& listener) {
  const Lock lock(mutex_);
  listeners_.push_back(listener);
}

void CoreBundleContext::report(Events& events, FrameworkEvent::Type type,
                               const detail::Component& component,
                               const std::string& problem) const {
  const auto bundle = component.bundle.lock();
  if (!bundle) return;
  events.emplace_back(
      type, bundle->label() + ", component " + component.description.name + ": " + problem);
}

void CoreBundleContext::dispatch(const Events& events) {
  for (const FrameworkEvent& event : events) {
    std::vector<FrameworkListener> listeners;
    {
      const Lock lock(mutex_);
      listeners = listeners_;
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
