#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "bundle_file/bundle_file.hpp"
#include "core/component.hpp"
#include "core/registry.hpp"
#include "core/service_record.hpp"
#include "cppmicroservices/Bundle.h"
#include "cppmicroservices/BundleContext.h"
#include "cppmicroservices/FrameworkEvent.h"

namespace cppmicroservices {

/// What a bundle gets as its context. Valid while the bundle is started.
class BundleContextPrivate {
 public:
  explicit BundleContextPrivate(std::weak_ptr<CoreBundleContext> framework)
      : core(std::move(framework)) {}

  const std::weak_ptr<CoreBundleContext> core;
  std::atomic<bool> valid{true};
};

inline namespace embedded_v1 {

/// An installed bundle. What is not const is guarded by the framework's lock.
class BundlePrivate {
 public:
  using SetContextFunction = void(BundleContextPrivate*);

  BundlePrivate(unsigned long number, std::string givenLocation, std::filesystem::path absolutePath,
                detail::BundleFile content)
      : id(number),
        location(std::move(givenLocation)),
        path(std::move(absolutePath)),
        file(std::move(content)) {}

  const unsigned long id;      ///< 0 is the framework itself
  const std::string location;  ///< how messages call the file
  const std::filesystem::path path;
  const detail::BundleFile file;
  std::weak_ptr<CoreBundleContext> core;  ///< set when the bundle is made

  Bundle::State state = Bundle::STATE_INSTALLED;
  std::shared_ptr<BundleContextPrivate> context;  ///< while it is started
  std::shared_ptr<detail::SharedLibrary> library;
  std::vector<std::shared_ptr<detail::Component>> components;  ///< while it is started

  /// How messages call the bundle.
  std::string label() const { return "bundle " + file.manifest.symbolicName; }
  /// Hands the library its context, or takes it away with null. Runs code of the bundle.
  /// @return what went wrong; empty if nothing did
  std::string setContext(BundleContextPrivate* value) const;
};

/// A framework: its bundles, its services and its listeners.
///
/// One mutex guards all state. Code of bundles and of listeners never runs while it is held:
/// operations decide under the lock, leave it, run that code and take the lock again. Operations
/// that change bundles come one after the other (`Lifecycle`); a thread that makes an instance is
/// waited for, unless it waits, directly or through others, for the thread that would wait.
class CoreBundleContext {
 public:
  using Events = std::vector<FrameworkEvent>;

  /// A new framework; when the last handle made with the result goes, the framework is stopped.
  static std::shared_ptr<CoreBundleContext> make();

  Bundle handle(const std::shared_ptr<BundlePrivate>& bundle) const;
  static const std::shared_ptr<BundlePrivate>& bundleOf(const Bundle& handle) { return handle.d; }
  static ServiceReferenceBase reference(const std::shared_ptr<ServiceRecord>& record,
                                        const std::string& interfaceId);
  /// @throws std::invalid_argument if the handle is empty
  static std::shared_ptr<ServiceRecord> record(const ServiceReferenceBase& reference);

  // Bundles.
  const std::shared_ptr<BundlePrivate>& systemBundle() const { return systemBundle_; }
  void start(const std::shared_ptr<BundlePrivate>& bundle);
  void stop(const std::shared_ptr<BundlePrivate>& bundle);
  void uninstall(const std::shared_ptr<BundlePrivate>& bundle);
  std::shared_ptr<BundlePrivate> install(const std::string& location);
  FrameworkEvent waitForStop(const std::chrono::milliseconds& timeout);
  Bundle::State state(const BundlePrivate& bundle) const;
  BundleContext context(const BundlePrivate& bundle) const;

  // Services.
  std::vector<std::shared_ptr<ServiceRecord>> services(const std::string& interfaceId,
                                                       const std::string& filter) const;
  InterfaceMapConstPtr service(const std::shared_ptr<ServiceRecord>& record);
  /// With the lock held.
  const detail::Registry& registry() const { return registry_; }
  /// Calls `visit` for the components of all started bundles in the order of their numbers, with
  /// the lock held.
  void forEachComponent(
      const std::function<void(const detail::Component&, const std::shared_ptr<BundlePrivate>&)>&
          visit) const;

  // Listeners.
  void addListener(const FrameworkListener& listener);

 private:
  using Lock = std::unique_lock<std::mutex>;
  using ComponentPtr = std::shared_ptr<detail::Component>;

  class Lifecycle;

  CoreBundleContext();
  void startFramework(Events& events);
  void stopFramework(Events& events);
  void startBundle(const std::shared_ptr<BundlePrivate>& bundle, Events& events);
  void stopBundle(const std::shared_ptr<BundlePrivate>& bundle, Events& events);
  void uninstallBundle(const std::shared_ptr<BundlePrivate>& bundle, Events& events);
  std::vector<ComponentPtr> takeUpComponents(const std::shared_ptr<BundlePrivate>& bundle,
                                             Events& events);

  // With the lock held.
  std::vector<ComponentPtr> startedComponents() const;
  std::vector<ComponentPtr> waitingComponents() const;
  bool wouldWaitForMe(std::thread::id other) const;
  bool awaitActivation(Lock& lock, const detail::Component& component);

  // Without it.
  void release(const std::vector<ComponentPtr>& withdrawn, Events& events);
  void end(detail::ComponentInstance& instance, const detail::Component& component,
           Events& events) const;
  InterfaceMapConstPtr serviceOf(const std::shared_ptr<ServiceRecord>& record, Events& events);
  std::shared_ptr<detail::ComponentInstance> activate(
      const detail::Component& component, const std::vector<std::shared_ptr<ServiceRecord>>& bound,
      Events& events);
  void report(Events& events, FrameworkEvent::Type type, const detail::Component& component,
              const std::string& problem) const;
  void dispatch(const Events& events);

  std::weak_ptr<CoreBundleContext> handles_;  ///< shared by the handles
  std::weak_ptr<CoreBundleContext> self_;
  const std::shared_ptr<BundlePrivate> systemBundle_;

  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<std::shared_ptr<BundlePrivate>> bundles_;  ///< without the framework itself
  detail::Registry registry_;
  std::vector<FrameworkListener> listeners_;
  unsigned long nextBundleId_ = 1;
  unsigned long nextComponentId_ = 1;

  std::thread::id lifecycleThread_;
  int lifecycleDepth_ = 0;
  std::set<std::thread::id> waitingForLifecycle_;
  std::map<std::thread::id, const detail::Component*> waitingForInstance_;
};

}  // namespace embedded_v1
}  // namespace cppmicroservices
