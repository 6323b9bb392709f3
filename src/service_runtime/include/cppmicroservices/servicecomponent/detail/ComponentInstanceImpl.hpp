#pragma once

/// @file
/// The holder of a component's object, as a bundle's `NewInstance_` functions make it.

#include <array>
#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

#include "cppmicroservices/servicecomponent/detail/ComponentInstance.hpp"

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace service::component::detail {

template <class T, class = void>
struct HasActivate : std::false_type {};
template <class T>
struct HasActivate<T, std::void_t<decltype(std::declval<T&>().Activate(
                          std::declval<const std::shared_ptr<ComponentContext>&>()))>>
    : std::true_type {};

template <class T, class = void>
struct HasDeactivate : std::false_type {};
template <class T>
struct HasDeactivate<T, std::void_t<decltype(std::declval<T&>().Deactivate(
                            std::declval<const std::shared_ptr<ComponentContext>&>()))>>
    : std::true_type {};

/// Holds an object of class `T`, published under the interfaces in `InterfaceTuple`. Each of
/// `Dependencies` is a std::shared_ptr to an interface; the constructor of `T` takes them in this
/// order.
template <class T, class InterfaceTuple = std::tuple<>, class... Dependencies>
class ComponentInstanceImpl final : public ComponentInstance {
 public:
  /// @param referenceNames the references of the manifest that `Dependencies` stand for, in order
  explicit ComponentInstanceImpl(
      std::array<std::string, sizeof...(Dependencies)> referenceNames = {})
      : referenceNames_(std::move(referenceNames)) {}

  void CreateInstance(const std::shared_ptr<ComponentContext>& context) override {
    context_ = context;
    object_ = create(std::index_sequence_for<Dependencies...>());
  }

  InterfaceMapPtr GetInterfaceMap() override {
    auto interfaces = std::make_shared<InterfaceMap>();
    addInterfaces(*interfaces, static_cast<InterfaceTuple*>(nullptr));
    return interfaces;
  }

  void Activate() override {
    if constexpr (HasActivate<T>::value) object_->Activate(context_);
  }

  void Deactivate() override {
    if constexpr (HasDeactivate<T>::value) object_->Deactivate(context_);
  }

 private:
  template <std::size_t... I>
  std::shared_ptr<T> create([[maybe_unused]] std::index_sequence<I...> indices) {
    static_assert(std::is_constructible_v<T, const Dependencies&...>,
                  "the component's class has no constructor that takes its references, or leaves a "
                  "member of an interface pure");
    return std::make_shared<T>(dependency<Dependencies>(referenceNames_[I])...);
  }

  template <class Dependency>
  Dependency dependency(const std::string& referenceName) const {
    using Interface = typename Dependency::element_type;
    Dependency service = context_->template LocateService<Interface>(referenceName);
    if (!service) {
      throw std::runtime_error("the constructor takes a reference \"" + referenceName + "\" to " +
                               us_service_interface_iid<Interface>() +
                               ", which the manifest does not give");
    }
    return service;
  }

  template <class... Interfaces>
  void addInterfaces(InterfaceMap& interfaces, std::tuple<Interfaces...>* /*tag*/) const {
    (interfaces.emplace(us_service_interface_iid<Interfaces>(),
                        std::static_pointer_cast<Interfaces>(object_)),
     ...);
  }

  std::array<std::string, sizeof...(Dependencies)> referenceNames_;
  std::shared_ptr<ComponentContext> context_;
  std::shared_ptr<T> object_;
};

}  // namespace service::component::detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
