#include "core/component.hpp"

#include <stdexcept>
#include <utility>

#include "filter/property_names.hpp"

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace detail {

namespace {

/// As `guarded`, but what went wrong is thrown, as an exception of the runtime's own.
template <class Step>
void checked(const std::string& what, Step step) {
  const std::string problem = guarded(what, step);
  if (!problem.empty()) throw std::runtime_error(problem);
}

/// A pointer to the same object that keeps the object's library loaded.
std::shared_ptr<void> keepingLibrary(std::shared_ptr<void> object,
                                     std::shared_ptr<SharedLibrary> library) {
  void* const address = object.get();
  return {address, [object = std::move(object), library = std::move(library)](void*) mutable {
            object.reset();  // runs code of the library, so it goes first
            library.reset();
          }};
}

AnyMap offered(const ComponentDescription& description, unsigned long number) {
  AnyMap properties = description.properties;
  properties[property_names::kInterfaces] = description.interfaces;
  properties[property_names::kComponentName] = description.name;
  properties[property_names::kComponentId] = number;
  return properties;
}

}  // namespace

std::string EntryPoints::symbol(const std::string& prefix, const std::string& implementationClass) {
  std::string name = prefix + implementationClass;
  for (std::size_t at = name.find("::"); at != std::string::npos; at = name.find("::", at)) {
    name.replace(at, 2, "_");
  }
  return name;
}

EntryPoints::EntryPoints(std::shared_ptr<SharedLibrary> loaded,
                         const std::string& implementationClass)
    : library(std::move(loaded)) {
  const auto find = [this](auto*& function, const std::string& name) {
    function = library->function<std::remove_reference_t<decltype(*function)>>(name);
    if (!function) throw std::runtime_error("the library does not export " + name);
  };
  find(newInstance, symbol("NewInstance_", implementationClass));
  find(deleteInstance, symbol("DeleteInstance_", implementationClass));
}

ComponentInstance::ComponentInstance(const EntryPoints& entryPoints,
                                     const std::vector<std::string>& interfaces,
                                     std::shared_ptr<ComponentContextImpl> context)
    : entryPoints_(entryPoints), context_(std::move(context)) {
  try {
    checked("making the instance", [&] {
      holder_ = entryPoints_.newInstance();
      if (!holder_) throw std::runtime_error("NewInstance_ returned null");
      holder_->CreateInstance(context_);
    });
    takeServices(interfaces);
    checked("activating the instance", [&] { holder_->Activate(); });
  } catch (const std::runtime_error& error) {
    services_.reset();
    context_->invalidate();
    const std::string further = freeHolder();
    if (further.empty()) throw;
    throw std::runtime_error(error.what() + ("; " + further));
  }
}

ComponentInstance::~ComponentInstance() = default;

void ComponentInstance::takeServices(const std::vector<std::string>& interfaces) {
  auto services = std::make_shared<InterfaceMap>();
  checked("asking the instance for its interfaces", [&] {
    const InterfaceMapConstPtr offered = holder_->GetInterfaceMap();
    for (const std::string& name : interfaces) {
      std::shared_ptr<void> object =
          offered && offered->count(name) != 0 ? offered->at(name) : nullptr;
      if (!object) throw std::runtime_error("it does not offer " + name);
      services->emplace(name, keepingLibrary(std::move(object), entryPoints_.library));
    }
  });
  services_ = std::move(services);
}

std::string ComponentInstance::freeHolder() {
  Holder* const holder = std::exchange(holder_, nullptr);
  if (!holder) return {};
  return guarded("freeing the instance", [&] { entryPoints_.deleteInstance(holder); });
}

std::vector<std::string> ComponentInstance::end() {
  std::vector<std::string> problems;
  const auto note = [&](std::string problem) {
    if (!problem.empty()) problems.push_back(std::move(problem));
  };
  note(guarded("deactivating the instance", [&] { holder_->Deactivate(); }));
  context_->invalidate();
  note(freeHolder());
  return problems;
}

Component::Component(ComponentDescription componentDescription, unsigned long number,
                     const std::shared_ptr<BundlePrivate>& owner, EntryPoints functions)
    : description(std::move(componentDescription)),
      id(number),
      properties(offered(description, number)),
      bundle(owner),
      entryPoints(std::move(functions)) {}

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
