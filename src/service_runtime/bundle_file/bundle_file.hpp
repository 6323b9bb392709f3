#pragma once

#include <filesystem>
#include <string>

#include "bundle_file/manifest.hpp"
#include "bundle_file/resource_archive.hpp"

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace detail {

/// What a bundle's file tells before the library is loaded.
struct BundleFile {
  std::string manifestText;
  BundleManifest manifest;
};

/// Reads the manifest of the bundle at `path`, as it lies there.
/// @throws std::runtime_error saying why there is no bundle of this runtime there
ManifestFile readUnparsedManifest(const std::filesystem::path& path);

/// Reads the bundle at `path`.
/// @throws std::runtime_error saying why there is no bundle of this runtime there
BundleFile readBundleFile(const std::filesystem::path& path);

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
