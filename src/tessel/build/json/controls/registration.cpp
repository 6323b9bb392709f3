// The functions that the service runtime looks up by name: two for each component, which the build
// makes from the manifest, and the setter of the bundle's context.

#include <array>
#include <atomic>
#include <memory>
#include <new>
#include <string>
#include <tuple>

#include "controls/control_builders.hpp"
#include "cppmicroservices/GlobalConfig.h"
#include "cppmicroservices/servicecomponent/detail/ComponentInstance.hpp"
#include "cppmicroservices/servicecomponent/detail/ComponentInstanceImpl.hpp"
#include "widgets/task_builders.hpp"

namespace cppmicroservices {
class BundleContextPrivate;
}

namespace {

using cppmicroservices::service::component::detail::ComponentInstance;
using cppmicroservices::service::component::detail::ComponentInstanceImpl;

/// Creates the holder of a component; null when there is no memory for it. The component's
/// constructor takes the services bound to the manifest's references of these names.
template <typename Impl, typename Interfaces, typename... References, typename... Names>
ComponentInstance* newInstance(const Names&... referenceNames) {
  static_assert(sizeof...(References) == sizeof...(Names));
  using Holder = ComponentInstanceImpl<Impl, Interfaces, References...>;
  if constexpr (sizeof...(References) == 0) {
    return new (std::nothrow) Holder();
  } else {
    try {
      const std::array<std::string, sizeof...(References)> names{referenceNames...};
      return new (std::nothrow) Holder(names);
    } catch (const std::bad_alloc&) {
      return nullptr;  // the names allocate, too
    }
  }
}

void deleteInstance(ComponentInstance* instance) {
  delete instance;
}

// Set by the runtime when it loads the bundle, and read by no builder.
std::atomic<cppmicroservices::BundleContextPrivate*> bundleContext{nullptr};

}  // namespace

#include "entry_points.inc"

extern "C" US_ABI_EXPORT void
_us_set_bundle_context_instance_com_quorvex_tessel_build_json_controls(
    cppmicroservices::BundleContextPrivate* context) {
  bundleContext.exchange(context);
}
