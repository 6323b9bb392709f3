#pragma once

/// @file
/// Which service runtime a bundle was built for.

#include <filesystem>

namespace tessel_tool {

/// Whether a file is a bundle that was built for the embedded service runtime, as a section of it
/// says. The embedded runtime looks for itself; CppMicroServices does not, and a bundle that was
/// not built for it ends the process.
bool isForEmbeddedRuntime(const std::filesystem::path& bundle);

}  // namespace tessel_tool
