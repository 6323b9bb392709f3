#include "bundle_file.hpp"

#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <system_error>

#include "elf_file.hpp"
#include "resource_archive.hpp"

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace detail {

namespace {

constexpr std::uint64_t kLongestMarker = 256;
constexpr std::uint64_t kLongestArchive = 64U << 20U;

std::ifstream open(const std::filesystem::path& path) {
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
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot be read: " + std::generic_category().message(errno));
  return file;
}

}  // namespace

BundleFile readBundle(std::istream& library) {
  ElfFile elf(library);
  const auto archive = elf.section(".us_resources", kLongestArchive);
  if (!archive) throw std::runtime_error("is not a bundle: it has no section .us_resources");
  const auto marker = elf.section(".tessel_runtime", kLongestMarker);
  if (!marker) {
    throw std::runtime_error(
        "was not built for the embedded service runtime: it has no section .tessel_runtime");
  }
  if (*marker != TESSEL_EMBEDDED_RUNTIME_MARKER) {
    throw std::runtime_error("was built for another version of the embedded service runtime than " +
                             std::string(TESSEL_EMBEDDED_RUNTIME_MARKER));
  }
  const ManifestFile file = readManifestFile(*archive);
  BundleFile bundle{file.text, parseManifest(file.text)};
  if (file.folder != bundle.manifest.symbolicName) {
    throw std::runtime_error("its manifest.json is in the folder \"" + file.folder + "\", not \"" +
                             bundle.manifest.symbolicName + "\"");
  }
  return bundle;
}

BundleFile readBundleFile(const std::filesystem::path& path) {
  try {
    std::ifstream file = open(path);
    return readBundle(file);
  } catch (const std::runtime_error& error) {
    throw std::runtime_error(path.string() + ": " + error.what());
  }
}

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
