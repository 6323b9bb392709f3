#pragma once

#include "builder_services.hpp"
#include "exit_status.hpp"
#include "import_command.hpp"

namespace tessel_tool {

/// Imports documents and writes one HTML page about all of them.
/// @throws BundleError, OutputError
ExitStatus runImportPage(BuilderServices& services, const ImportOptions& options);

}  // namespace tessel_tool
