#include "component.hpp"

#include <stdexcept>
#include <utility>

#include "cppmicroservices/servicecomponent/ComponentConstants.hpp"

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

AnyMap withNameAndNumber(const ComponentDescription& description, unsigned long number) {
  AnyMap properties = description.properties;
  properties[service::component::ComponentConstants::COMPONENT_NAME] = description.name;
  properties[service::component::ComponentConstants::COMPONENT_ID] = number;
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
    : context_(std::move(context)) {
  try {
    checked("making the instance", [&] {
      Holder* const holder = entryPoints.newInstance();
      if (!holder) throw std::runtime_error("NewInstance_ returned null");
      holder_ =
          std::shared_ptr<Holder>(holder, [deleteInstance = entryPoints.deleteInstance,
                                           library = entryPoints.library](Holder* made) mutable {
            guarded("", [&] { deleteInstance(made); });
            library.reset();
          });
      holder_->CreateInstance(context_);
    });
    takeServices(entryPoints, interfaces);
    checked("activating the instance", [&] { holder_->Activate(); });
  } catch (const std::runtime_error&) {
    services_.reset();
    context_->invalidate();
    throw;
  }
}

ComponentInstance::~ComponentInstance() = default;

void ComponentInstance::takeServices(const EntryPoints& entryPoints,
                                     const std::vector<std::string>& interfaces) {
  auto services = std::make_shared<InterfaceMap>();
  checked("asking the instance for its interfaces", [&] {
    const InterfaceMapConstPtr offered = holder_->GetInterfaceMap();
    for (const std::string& name : interfaces) {
      std::shared_ptr<void> object =
          offered && offered->count(name) != 0 ? offered->at(name) : nullptr;
      if (!object) throw std::runtime_error("it does not offer " + name);
      services->emplace(name, keepingLibrary(std::move(object), entryPoints.library));
    }
  });
  services_ = std::move(services);
}

std::string ComponentInstance::deactivate() {
  std::string problem = guarded("deactivating the instance", [&] { holder_->Deactivate(); });
  context_->invalidate();
  return problem;
}

Component::Component(ComponentDescription componentDescription, unsigned long number,
                     const std::shared_ptr<BundlePrivate>& owner, EntryPoints functions)
    : description(std::move(componentDescription)),
      id(number),
      properties(withNameAndNumber(description, number)),
      bundle(owner),
      entryPoints(std::move(functions)) {}

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
