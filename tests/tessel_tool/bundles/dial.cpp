// A bundle with one builder of its own.

#include <memory>
#include <new>
#include <tuple>

#include "cppmicroservices/BundleContext.h"
#include "cppmicroservices/GlobalConfig.h"
#include "cppmicroservices/servicecomponent/detail/ComponentInstance.hpp"
#include "cppmicroservices/servicecomponent/detail/ComponentInstanceImpl.hpp"
#include "support/dial_builder.hpp"

using cppmicroservices::service::component::detail::ComponentInstance;
using cppmicroservices::service::component::detail::ComponentInstanceImpl;

extern "C" US_ABI_EXPORT ComponentInstance* NewInstance_test_support_DialBuilder() {
  return new (std::nothrow) ComponentInstanceImpl<test_support::DialBuilder,
                                                  std::tuple<tessel::build::json::NodeBuilder>>();
}
extern "C" US_ABI_EXPORT void DeleteInstance_test_support_DialBuilder(ComponentInstance* instance) {
  delete instance;
}

extern "C" US_ABI_EXPORT void _us_set_bundle_context_instance_tool_test_dial(
    cppmicroservices::BundleContextPrivate*) {}
