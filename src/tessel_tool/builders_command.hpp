#pragma once

#include "builder_services.hpp"
#include "exit_status.hpp"

namespace tessel_tool {

/// Lists the bundle's components on standard output: those that are published as builders, and
/// those that wait for something.
/// @throws BundleError, OutputError
ExitStatus runBuilders(BuilderServices& services, bool json);

}  // namespace tessel_tool
