#include "builder_services.hpp"

#include <cppmicroservices/Any.h>
#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/Framework.h>
#include <cppmicroservices/FrameworkEvent.h>
#include <cppmicroservices/FrameworkFactory.h>
#include <cppmicroservices/ServiceReference.h>
#include <cppmicroservices/servicecomponent/runtime/ServiceComponentRuntime.hpp>

#include <algorithm>
#include <chrono>
#include <exception>
#include <mutex>
#include <new>
#include <sstream>
#include <utility>

#include "console.hpp"
#include "reference_host/json/text_writer.hpp"
#include "runtime_marker.hpp"
#include "tessel/build/json/builders.hpp"

namespace tessel_tool {

namespace {

using cppmicroservices::Any;
using cppmicroservices::Bundle;
using cppmicroservices::BundleContext;
using cppmicroservices::Framework;
using cppmicroservices::FrameworkEvent;
using cppmicroservices::ServiceReference;
using cppmicroservices::ServiceReferenceU;
using cppmicroservices::service::component::runtime::ServiceComponentRuntime;
using reference_host::importer::NamedBuilder;
namespace dto = cppmicroservices::service::component::runtime::dto;

#if defined(_WIN32)
constexpr char kPathSeparator = ';';
#else
constexpr char kPathSeparator = ':';
#endif

/// A published builder, before it is asked for.
struct PublishedBuilder {
  unsigned long componentId;
  std::string componentName;
  std::string interface;
  ServiceReferenceU reference;
};

const char* reasonOf(const std::exception& error) {
  return dynamic_cast<const std::bad_alloc*>(&error) != nullptr ? kOutOfMemory : error.what();
}

std::string propertyText(const ServiceReferenceU& reference, const std::string& key) {
  const Any value = reference.GetProperty(key);
  return value.Empty() ? std::string() : value.ToStringNoExcept();
}

std::string asJson(const Any& value) {
  if (const auto* text = cppmicroservices::any_cast<std::string>(&value)) {
    std::string json;
    reference_host::json::appendText(json, *text);
    return json;
  }
  return value.ToJSON();
}

ComponentDescription componentOf(const dto::ComponentDescriptionDTO& description) {
  ComponentDescription component{description.name, description.serviceInterfaces, {}};
  for (const auto& [key, value] : description.properties) {
    component.properties.emplace(key, asJson(value));
  }
  return component;
}

/// What the reference is for stands in the component's description; the state names it only.
MissingReference missingReference(const dto::ComponentDescriptionDTO& description,
                                  const dto::UnsatisfiedReferenceDTO& unsatisfied) {
  for (const auto& reference : description.references) {
    if (reference.name == unsatisfied.name) {
      return {reference.name, reference.interfaceName, reference.target};
    }
  }
  return {unsatisfied.name, "", unsatisfied.target};
}

}  // namespace

BundleError::BundleError(const std::filesystem::path& bundle, const std::string& reason)
    // A runtime's own text may begin with the path already.
    : std::runtime_error(
          reason.rfind(bundle.string() + ": ", 0) == 0 ? reason : bundle.string() + ": " + reason) {
}

/// The framework and what is installed in it.
class BuilderServices::Runtime {
 public:
  explicit Runtime(std::string path)
      : path_(std::move(path)), framework_(cppmicroservices::FrameworkFactory().NewFramework()) {
    framework_.Start();
    context_ = framework_.GetBundleContext();
    context_.AddFrameworkListener([this](const FrameworkEvent& event) { note(event); });
    std::istringstream paths(TESSEL_RUNTIME_BUNDLES);
    for (std::string first; std::getline(paths, first, kPathSeparator);) {
      for (Bundle bundle : context_.InstallBundles(first)) bundle.Start();
    }
  }

  ~Runtime() {
    try {
      stop();
    } catch (...) {
      // Whoever wants to know calls `close`.
    }
  }

  Runtime(const Runtime&) = delete;
  Runtime& operator=(const Runtime&) = delete;

  void stop() {
    if (std::exchange(stopped_, true)) return;
    framework_.Stop();
    framework_.WaitForStop(std::chrono::milliseconds::zero());
  }

  void start() {
    if (!TESSEL_RUNTIME_IS_EMBEDDED && isForEmbeddedRuntime(path_)) {
      throw std::runtime_error("was built for the embedded service runtime, not CppMicroServices");
    }
    bundles_ = context_.InstallBundles(path_);
    if (bundles_.empty()) throw std::runtime_error("this is no bundle");
    for (Bundle& bundle : bundles_) bundle.Start();
  }

  std::string bundleName() const { return bundles_.front().GetSymbolicName(); }

  std::vector<PublishedBuilder> published() {
    std::vector<PublishedBuilder> found;
    find<tessel::build::json::code::CodeElementBuilder>(found);
    find<tessel::build::json::NodeBuilder>(found);
    std::stable_sort(found.begin(), found.end(), [](const auto& left, const auto& right) {
      return left.componentId < right.componentId;
    });
    return found;
  }

  template <typename Interface>
  std::shared_ptr<Interface> get(const PublishedBuilder& builder) {
    return context_.GetService(ServiceReference<Interface>(builder.reference));
  }

  std::vector<dto::ComponentConfigurationDTO> configurations() {
    const auto reference = context_.GetServiceReference<ServiceComponentRuntime>();
    const auto components = reference ? context_.GetService(reference) : nullptr;
    if (!components) throw std::runtime_error("the service runtime tells nothing about components");
    std::vector<dto::ComponentConfigurationDTO> found;
    for (const auto& description : components->GetComponentDescriptionDTOs(bundles_)) {
      for (auto& configuration : components->GetComponentConfigurationDTOs(description)) {
        found.push_back(std::move(configuration));
      }
    }
    std::sort(found.begin(), found.end(),
              [](const auto& left, const auto& right) { return left.id < right.id; });
    return found;
  }

  /// The errors that the framework has reported since the last call; empty if none.
  std::string takeErrors() {
    const std::lock_guard<std::mutex> guard(mutex_);
    return std::exchange(errors_, {});
  }

 private:
  template <typename Interface>
  void find(std::vector<PublishedBuilder>& found) {
    for (const auto& reference : context_.GetServiceReferences<Interface>()) {
      found.push_back({std::stoul("0" + propertyText(reference, "component.id")),
                       propertyText(reference, "component.name"), reference.GetInterfaceId(),
                       reference});
    }
  }

  /// Warnings are passed on at once; errors are kept for whoever takes the next step.
  void note(const FrameworkEvent& event) {
    const auto type = event.GetType();
    const std::lock_guard<std::mutex> guard(mutex_);
    if (type == FrameworkEvent::FRAMEWORK_WARNING) {
      complain(path_, "warning: " + event.GetMessage());
    } else if (type == FrameworkEvent::FRAMEWORK_ERROR) {
      if (!errors_.empty()) errors_ += "; ";
      errors_ += event.GetMessage();
    }
  }

  // Before the framework, which may send events until it is gone.
  std::string path_;
  std::mutex mutex_;
  std::string errors_;

  Framework framework_;
  bool stopped_ = false;
  BundleContext context_;
  std::vector<Bundle> bundles_;
};

BuilderServices::BuilderServices(const std::filesystem::path& bundle) : path_(bundle) {
  try {
    runtime_ = std::make_unique<Runtime>(path_.string());
    runtime_->start();
  } catch (const std::exception& error) {
    throw BundleError(path_, reasonOf(error));
  }
  throwIfFailed();
}

BuilderServices::~BuilderServices() = default;

const std::vector<NamedBuilder>& BuilderServices::builders() {
  if (!builders_.empty()) return builders_;
  for (const PublishedBuilder& published : runtime_->published()) {
    NamedBuilder::Service service;
    try {
      if (published.interface == us_service_interface_iid<tessel::build::json::NodeBuilder>()) {
        service = runtime_->get<tessel::build::json::NodeBuilder>(published);
      } else {
        service = runtime_->get<tessel::build::json::code::CodeElementBuilder>(published);
      }
    } catch (const std::exception& error) {
      throw BundleError(path_, published.componentName + ": " + reasonOf(error));
    }
    if (!std::visit([](const auto& builder) { return builder != nullptr; }, service)) {
      const std::string errors = runtime_->takeErrors();
      throw BundleError(path_, published.componentName + ": " +
                                   (errors.empty() ? "cannot be activated" : errors));
    }
    builders_.emplace_back(published.componentName, std::move(service));
  }
  if (builders_.empty()) throw BundleError(path_, "the bundle publishes no builder");
  return builders_;
}

std::vector<ComponentDescription> BuilderServices::published() const {
  std::map<std::string, ComponentDescription> described;
  for (const auto& configuration : runtime_->configurations()) {
    described.emplace(configuration.description.name, componentOf(configuration.description));
  }
  std::vector<ComponentDescription> components;
  for (const PublishedBuilder& published : runtime_->published()) {
    ComponentDescription component;
    const auto found = described.find(published.componentName);
    if (found != described.end()) component = found->second;
    component.name = published.componentName;
    component.interfaces = {published.interface};
    components.push_back(std::move(component));
  }
  return components;
}

std::vector<WaitingComponent> BuilderServices::waiting() const {
  std::vector<WaitingComponent> components;
  for (const auto& configuration : runtime_->configurations()) {
    if (configuration.state != dto::ComponentState::UNSATISFIED_REFERENCE) continue;
    WaitingComponent waiting{componentOf(configuration.description), {}};
    for (const auto& unsatisfied : configuration.unsatisfiedReferences) {
      waiting.waitsFor.push_back(missingReference(configuration.description, unsatisfied));
    }
    components.push_back(std::move(waiting));
  }
  return components;
}

std::string BuilderServices::bundleName() const {
  return runtime_->bundleName();
}

void BuilderServices::throwIfFailed() {
  const std::string errors = runtime_->takeErrors();
  if (!errors.empty()) throw BundleError(path_, errors);
}

void BuilderServices::close() {
  builders_.clear();
  try {
    runtime_->stop();
  } catch (const std::exception& error) {
    throw BundleError(path_, reasonOf(error));
  }
  throwIfFailed();
}

}  // namespace tessel_tool
