#pragma once

#include <string>
#include <vector>

#include "cppmicroservices/AnyMap.h"
#include "filter/ldap_expression.hpp"

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace detail {

/// A mandatory, static reference of a component to one service.
struct ReferenceDescription {
  std::string name;
  std::string interfaceName;
  std::string target;     ///< the manifest's filter; may be empty
  LdapExpression filter;  ///< interface and target in one
};

/// A component as the manifest describes it.
struct ComponentDescription {
  std::string name;
  std::string implementationClass;
  std::vector<std::string> interfaces;
  AnyMap properties;
  std::vector<ReferenceDescription> references;
};

/// The manifest of a bundle.
struct BundleManifest {
  std::string symbolicName;
  std::vector<ComponentDescription> components;
};

/// Reads a manifest.
/// @throws std::runtime_error naming the bundle, the component and the member, as far as there are
///         any, if the manifest is wrong or asks for what this runtime does not do
BundleManifest parseManifest(const std::string& json);

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
