#pragma once

// What makes and frees the components of the tool's test bundles, and the setter of a bundle's
// context, which nobody keeps.

#include <array>
#include <new>
#include <string>
#include <tuple>

#include "cppmicroservices/BundleContext.h"
#include "cppmicroservices/GlobalConfig.h"
#include "cppmicroservices/servicecomponent/detail/ComponentInstance.hpp"
#include "cppmicroservices/servicecomponent/detail/ComponentInstanceImpl.hpp"

using cppmicroservices::service::component::detail::ComponentInstance;

template <class Impl, class Interfaces, class... References, class... Names>
ComponentInstance* newInstance(const Names&... referenceNames) {
  using cppmicroservices::service::component::detail::ComponentInstanceImpl;
  const std::array<std::string, sizeof...(References)> names{referenceNames...};
  return new (std::nothrow) ComponentInstanceImpl<Impl, Interfaces, References...>(names);
}

inline void deleteInstance(ComponentInstance* instance) {
  delete instance;
}

extern "C" US_ABI_EXPORT void TEST_CONTEXT_SETTER(cppmicroservices::BundleContextPrivate*) {}
