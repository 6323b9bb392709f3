// A bundle that publishes nothing.

#include "cppmicroservices/BundleContext.h"
#include "cppmicroservices/GlobalConfig.h"

extern "C" US_ABI_EXPORT void _us_set_bundle_context_instance_tool_test_silent(
    cppmicroservices::BundleContextPrivate*) {}
