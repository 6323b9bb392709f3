#pragma once

/// @file
/// Where the bundle lies.

#include <filesystem>
#include <optional>
#include <string>

namespace tessel_tool {

/// The bundle to load: the path asked for, or else the bundle beside the running program or in the
/// folder `../lib` of it.
/// @param requested none when no path was asked for.
/// @throws BundleError when there is no such file, or it is a folder.
std::filesystem::path locateBundle(const std::optional<std::string>& requested);

}  // namespace tessel_tool
