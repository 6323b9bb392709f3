#pragma once

/// @file
/// Interface names, and the map from interface names to one object's interface pointers.

#include <cxxabi.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <typeinfo>
#include <unordered_map>

/// The name under which services of the interface `T` are published: its qualified C++ name, unless
/// `CPPMICROSERVICES_DECLARE_SERVICE_INTERFACE` gives another one.
template <class T>
const std::string& us_service_interface_iid();

namespace cppmicroservices {
inline namespace embedded_v1 {

/// Interface name -> pointer to that interface of the object.
using InterfaceMap = std::unordered_map<std::string, std::shared_ptr<void>>;
using InterfaceMapPtr = std::shared_ptr<InterfaceMap>;
using InterfaceMapConstPtr = std::shared_ptr<const InterfaceMap>;

namespace detail {

/// The qualified C++ name of a type; defined here because a bundle links nothing of the runtime.
inline std::string demangledName(const std::type_info& type) {
  int status = 0;
  const std::unique_ptr<char, void (*)(void*)> name(
      abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), std::free);
  return status == 0 && name ? std::string(name.get()) : std::string(type.name());
}

}  // namespace detail

/// The pointer under `interfaceId` in `map`, or any one for an empty name; null if there is none.
inline std::shared_ptr<void> ExtractInterface(const InterfaceMapConstPtr& map,
                                              const std::string& interfaceId) {
  if (!map || map->empty()) return nullptr;
  if (interfaceId.empty()) return map->begin()->second;
  const auto entry = map->find(interfaceId);
  return entry == map->end() ? nullptr : entry->second;
}

}  // namespace embedded_v1
}  // namespace cppmicroservices

template <class T>
const std::string& us_service_interface_iid() {
  static const std::string name = cppmicroservices::detail::demangledName(typeid(T));
  return name;
}

/// Gives an interface a name of its own; stands outside every namespace.
#define CPPMICROSERVICES_DECLARE_SERVICE_INTERFACE(interface_type, interface_id) \
  template <>                                                                    \
  inline const std::string& us_service_interface_iid<interface_type>() {         \
    static const std::string name(interface_id);                                 \
    return name;                                                                 \
  }
