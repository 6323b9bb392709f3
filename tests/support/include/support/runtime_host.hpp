#pragma once

#include <chrono>
#include <memory>
#include <mutex>
#include <sstream>
#include <string>
#include <vector>

#include "cppmicroservices/Bundle.h"
#include "cppmicroservices/BundleContext.h"
#include "cppmicroservices/Framework.h"
#include "cppmicroservices/FrameworkEvent.h"
#include "cppmicroservices/FrameworkFactory.h"
#include "cppmicroservices/ServiceReference.h"
#include "journal.hpp"

namespace service_runtime_test {

inline std::string bundlePath(const std::string& name) {
  return std::string(TEST_BUNDLE_DIRECTORY) + "/" + name + ".so";
}

inline std::string textOf(const cppmicroservices::FrameworkEvent& event) {
  using cppmicroservices::FrameworkEvent;
  const auto type = event.GetType();
  const char* const word = type == FrameworkEvent::FRAMEWORK_ERROR     ? "ERROR"
                           : type == FrameworkEvent::FRAMEWORK_WARNING ? "WARNING"
                           : type == FrameworkEvent::FRAMEWORK_STARTED ? "STARTED"
                           : type == FrameworkEvent::FRAMEWORK_STOPPED ? "STOPPED"
                                                                       : "other";
  return std::string(word) + ": " + event.GetMessage();
}

/// A framework that is started for one test, with the events it has sent.
class Host {
 public:
  Host() : framework_(cppmicroservices::FrameworkFactory().NewFramework()) {
    framework_.Start();
    context_ = framework_.GetBundleContext();
    context_.AddFrameworkListener([this](const cppmicroservices::FrameworkEvent& event) {
      const std::lock_guard lock(mutex_);
      events_.push_back(textOf(event));
    });
    std::istringstream paths(TESSEL_RUNTIME_BUNDLES);
    for (std::string path; std::getline(paths, path, ':');) {
      for (auto bundle : context_.InstallBundles(path)) bundle.Start();
    }
    takeJournal();
  }
  ~Host() {
    framework_.Stop();
    framework_.WaitForStop(std::chrono::milliseconds::zero());
  }
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  cppmicroservices::Framework& framework() { return framework_; }
  cppmicroservices::BundleContext& context() { return context_; }

  cppmicroservices::Bundle install(const std::string& name) {
    return context_.InstallBundles(bundlePath(name)).back();
  }
  cppmicroservices::Bundle start(const std::string& name) {
    auto bundle = install(name);
    bundle.Start();
    return bundle;
  }

  /// The best service under the interface; null if there is none or it cannot be had.
  template <class Interface>
  std::shared_ptr<Interface> service(const std::string& filter = "") {
    const auto references = context_.GetServiceReferences<Interface>(filter);
    return references.empty() ? nullptr : context_.GetService(references.front());
  }

  /// Takes the events sent up to now, as `TYPE: message`.
  std::vector<std::string> takeEvents() {
    const std::lock_guard lock(mutex_);
    return std::exchange(events_, {});
  }

 private:
  std::mutex mutex_;
  std::vector<std::string> events_;
  cppmicroservices::Framework framework_;
  cppmicroservices::BundleContext context_;
};

}  // namespace service_runtime_test
