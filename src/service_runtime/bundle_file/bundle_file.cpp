#include "bundle_file/bundle_file.hpp"

#include <stdexcept>
#include <system_error>
#include <utility>

#include "bundle_file/library_data.hpp"

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace detail {

namespace {

void requireFile(const std::filesystem::path& path) {
  std::error_code error;
  const auto status = std::filesystem::status(path, error);
  if (status.type() == std::filesystem::file_type::not_found) {
    throw std::runtime_error("no such file");
  }
  if (error) throw std::runtime_error("cannot be read: " + error.message());
  if (std::filesystem::is_directory(status)) throw std::runtime_error("is a directory");
  if (!std::filesystem::is_regular_file(status)) {
    throw std::runtime_error("is not a regular file");
  }
}

}  // namespace

ManifestFile readUnparsedManifest(const std::filesystem::path& path) {
  requireFile(path);
  LibraryData data = readLibraryData(path);
  if (data.marker != TESSEL_EMBEDDED_RUNTIME_MARKER) {
    throw std::runtime_error("was built for another version of the embedded service runtime than " +
                             std::string(TESSEL_EMBEDDED_RUNTIME_MARKER));
  }
  return readManifestFile(std::move(data.archive));
}

BundleFile readBundleFile(const std::filesystem::path& path) {
  const ManifestFile file = readUnparsedManifest(path);
  BundleFile bundle{file.text, parseManifest(file.text)};
  if (file.folder != bundle.manifest.symbolicName) {
    throw std::runtime_error("its manifest.json is in the folder \"" + file.folder + "\", not \"" +
                             bundle.manifest.symbolicName + "\"");
  }
  return bundle;
}

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
