#pragma once

#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "bundle_file.hpp"
#include "component.hpp"
#include "cppmicroservices/Bundle.h"
#include "cppmicroservices/BundleContext.h"
#include "cppmicroservices/FrameworkEvent.h"
#include "cppmicroservices/servicecomponent/runtime/ServiceComponentRuntime.hpp"
#include "service_record.hpp"

namespace cppmicroservices {

/// What a bundle gets as its context. Valid while the bundle is started.
class BundleContextPrivate {
 public:
  BundleContextPrivate(std::weak_ptr<CoreBundleContext> framework,
                       std::weak_ptr<BundlePrivate> owner)
      : core(std::move(framework)), bundle(std::move(owner)) {}

  const std::weak_ptr<CoreBundleContext> core;
  const std::weak_ptr<BundlePrivate> bundle;
  std::atomic<bool> valid{true};
};

inline namespace embedded_v1 {

/// An installed bundle. What is not const is guarded by the framework's lock.
class BundlePrivate {
 public:
  using SetContextFunction = void(BundleContextPrivate*);

  BundlePrivate(long number, std::string givenLocation, std::filesystem::path absolutePath,
                detail::BundleFile content)
      : id(number),
        location(std::move(givenLocation)),
        path(std::move(absolutePath)),
        file(std::move(content)) {}

  const long id;
  const std::string location;
  const std::filesystem::path path;
  const detail::BundleFile file;

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
  static ServiceReferenceBase reference(const std::shared_ptr<ServiceRecord>& record,
                                        const std::string& interfaceId);
  /// @throws std::invalid_argument if the handle is empty
  static std::shared_ptr<ServiceRecord> record(const ServiceReferenceBase& reference);

  // Bundles.
  const std::shared_ptr<BundlePrivate>& systemBundle() const { return systemBundle_; }
  void init();
  void start(const std::shared_ptr<BundlePrivate>& bundle);
  void stop(const std::shared_ptr<BundlePrivate>& bundle);
  void uninstall(const std::shared_ptr<BundlePrivate>& bundle);
  std::shared_ptr<BundlePrivate> install(const std::string& location);
  FrameworkEvent waitForStop(const std::chrono::milliseconds& timeout);
  std::vector<std::shared_ptr<BundlePrivate>> bundles() const;
  Bundle::State state(const BundlePrivate& bundle) const;
  BundleContext context(const BundlePrivate& bundle) const;

  // Services.
  std::vector<std::shared_ptr<ServiceRecord>> services(const std::string& interfaceId,
                                                       const std::string& filter) const;
  std::vector<std::shared_ptr<ServiceRecord>> servicesOf(const BundlePrivate& bundle) const;
  InterfaceMapConstPtr service(const std::shared_ptr<ServiceRecord>& record);

  // Components.
  using ComponentView = service::component::runtime::dto::ComponentConfigurationDTO;
  /// The state of the components of the started bundles, or of one bundle's.
  std::vector<ComponentView> components(const BundlePrivate* onlyOf = nullptr) const;

  // Listeners.
  ListenerToken addListener(const FrameworkListener& listener);
  void removeListener(const ListenerToken& token);

 private:
  using Lock = std::unique_lock<std::mutex>;
  using ComponentPtr = std::shared_ptr<detail::Component>;

  class Lifecycle;

  CoreBundleContext();
  void stopFramework(Events& events);
  void startBundle(const std::shared_ptr<BundlePrivate>& bundle, Events& events);
  void stopBundle(const std::shared_ptr<BundlePrivate>& bundle, Events& events);
  void uninstallBundle(const std::shared_ptr<BundlePrivate>& bundle, Events& events);
  std::vector<ComponentPtr> takeUpComponents(const std::shared_ptr<BundlePrivate>& bundle,
                                             Events& events);

  // With the lock held.
  std::vector<std::shared_ptr<BundlePrivate>> bundlesLocked() const;
  std::vector<ComponentPtr> startedComponents() const;
  std::shared_ptr<ServiceRecord> publish(const std::shared_ptr<BundlePrivate>& bundle,
                                         std::vector<std::string> interfaces, AnyMap properties);
  std::shared_ptr<ServiceRecord> bestMatch(const detail::ReferenceDescription& reference) const;
  void publishSatisfied();
  void withdraw(const ComponentPtr& component, std::vector<ComponentPtr>& withdrawn);
  void reportCycles(const BundlePrivate& bundle, Events& events) const;
  bool wouldWaitForMe(std::thread::id other) const;
  bool awaitActivation(Lock& lock, const detail::Component& component);

  // Without it.
  void release(const std::vector<ComponentPtr>& withdrawn, Events& events);
  InterfaceMapConstPtr serviceOf(const std::shared_ptr<ServiceRecord>& record, Events& events);
  std::shared_ptr<detail::ComponentInstance> activate(
      const detail::Component& component, const std::shared_ptr<ServiceRecord>& record,
      const std::vector<std::shared_ptr<ServiceRecord>>& bound, Events& events);
  void report(Events& events, FrameworkEvent::Type type, const detail::Component& component,
              const std::string& problem) const;
  void report(Events& events, FrameworkEvent::Type type,
              const std::shared_ptr<BundlePrivate>& bundle, const std::string& message) const;
  void dispatch(const Events& events);

  std::weak_ptr<CoreBundleContext> handles_;  ///< shared by the handles
  std::weak_ptr<CoreBundleContext> self_;
  const std::shared_ptr<BundlePrivate> systemBundle_;

  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<std::shared_ptr<BundlePrivate>> bundles_;   ///< without the framework itself
  std::vector<std::shared_ptr<ServiceRecord>> services_;  ///< in the order of publication
  std::map<ListenerTokenId, FrameworkListener> listeners_;
  long nextBundleId_ = 1;
  long nextServiceId_ = 1;
  unsigned long nextComponentId_ = 1;
  ListenerTokenId nextListenerId_ = 1;

  std::thread::id lifecycleThread_;
  int lifecycleDepth_ = 0;
  std::set<std::thread::id> waitingForLifecycle_;
  std::map<std::thread::id, const detail::Component*> waitingForInstance_;
};

}  // namespace embedded_v1
}  // namespace cppmicroservices
