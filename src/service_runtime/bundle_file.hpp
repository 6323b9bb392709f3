#pragma once

#include <filesystem>
#include <istream>
#include <string>

#include "manifest.hpp"

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace detail {

/// What a bundle's file tells before the library is loaded.
struct BundleFile {
  std::string manifestText;
  BundleManifest manifest;
};

/// Reads a bundle out of the bytes of a shared library.
/// @throws std::runtime_error saying why it is no bundle of this runtime
BundleFile readBundle(std::istream& library);

/// Reads the bundle at `path`.
/// @throws std::runtime_error beginning with the path as it is given and saying why there is no
///         bundle of this runtime there
BundleFile readBundleFile(const std::filesystem::path& path);

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
