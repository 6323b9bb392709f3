#pragma once

#include <filesystem>
#include <string>

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace detail {

/// What makes a shared library a bundle. Where it lies in the file depends on the platform.
struct LibraryData {
  std::string archive;  ///< the zip archive with the manifest
  std::string marker;   ///< names the runtime that the library was built for
};

/// Reads the file of a shared library for this machine. The bytes are not trusted.
/// @throws std::runtime_error if it cannot be read, is no such library, or has no such data of a
///         sensible length
LibraryData readLibraryData(const std::filesystem::path& path);

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
