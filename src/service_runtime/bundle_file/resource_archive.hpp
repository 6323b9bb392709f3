#pragma once

#include <string>

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace detail {

/// The manifest of a bundle as it lies in the bundle's resources.
struct ManifestFile {
  std::string folder;  ///< the one folder of the archive
  std::string text;    ///< the content of manifest.json in it
};

/// Takes the manifest out of a zip archive that has one folder, with manifest.json in it. The bytes
/// are not trusted; the manifest may have up to 4 MiB.
/// @throws std::runtime_error if these are the bytes of no such archive
ManifestFile readManifestFile(std::string bytes);

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
