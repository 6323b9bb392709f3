#include "bundle_file/resource_archive.hpp"

#include <unzip.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <set>
#include <stdexcept>
#include <vector>

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace detail {

namespace {

constexpr std::uint64_t kLongestManifest = 4U << 20U;
constexpr std::uint64_t kMostEntries = 10000;
constexpr std::uint32_t kEncrypted = 1;  // a flag of an entry

struct Close {
  void operator()(unzFile archive) const { unzClose(archive); }
};
using Archive = std::unique_ptr<void, Close>;

struct Entry {
  std::string path;
  unz_file_info64 info{};
  unz64_file_pos place{};
};

void requireArchive(bool holds) {
  if (!holds) throw std::runtime_error("its resources are no zip archive");
}

/// @pre the bytes outlive the archive.
Archive open(std::string& bytes) {
  zlib_filefunc64_def functions{};
  fill_fopen64_filefunc(&functions);
  functions.opaque = &bytes;
  functions.zopen64_file = [](void* opened, const void* /*path*/, int /*mode*/) -> void* {
    auto& content = *static_cast<std::string*>(opened);
    return fmemopen(content.data(), content.size(), "rb");
  };
  Archive archive(unzOpen2_64("", &functions));
  requireArchive(archive != nullptr);
  return archive;
}

std::vector<Entry> entriesOf(unzFile archive) {
  unz_global_info64 all{};
  requireArchive(unzGetGlobalInfo64(archive, &all) == UNZ_OK);
  if (all.number_entry > kMostEntries) {
    throw std::runtime_error("its resources have too many entries");
  }
  std::vector<Entry> entries(static_cast<std::size_t>(all.number_entry));
  int (*go)(unzFile) = &unzGoToFirstFile;
  for (Entry& entry : entries) {
    requireArchive(go(archive) == UNZ_OK && unzGetFilePos64(archive, &entry.place) == UNZ_OK);
    const auto read = [&] {
      return unzGetCurrentFileInfo64(archive, &entry.info, entry.path.data(), entry.path.size(),
                                     nullptr, 0, nullptr, 0) == UNZ_OK;
    };
    requireArchive(read());
    entry.path.resize(entry.info.size_filename);
    requireArchive(read());
    go = &unzGoToNextFile;
  }
  return entries;
}

/// The one folder that everything in the archive lies in.
std::string onlyFolder(const std::vector<Entry>& entries) {
  std::set<std::string> folders;
  for (const Entry& entry : entries) {
    const std::size_t slash = entry.path.find('/');
    if (slash == 0 || slash == std::string::npos) {
      throw std::runtime_error("its resources have an entry outside a folder: \"" + entry.path +
                               "\"");
    }
    folders.insert(entry.path.substr(0, slash));
  }
  if (folders.size() > 1) {
    throw std::runtime_error("its resources have several folders: \"" + *folders.begin() +
                             "\" and \"" + *std::next(folders.begin()) + "\"");
  }
  return folders.empty() ? std::string() : *folders.begin();
}

[[noreturn]] void failToUnpack(const std::string& reason) {
  throw std::runtime_error("its manifest.json cannot be unpacked: " + reason);
}

/// @param status what a function of the library returned; negative if it failed
int requireUnpacked(int status) {
  switch (status) {
    case UNZ_ERRNO:
      failToUnpack("Premature end of file");
    case UNZ_BADZIPFILE:
      failToUnpack("Zip archive inconsistent");
    case UNZ_CRCERROR:
      failToUnpack("CRC error");
    case Z_DATA_ERROR:
      failToUnpack("Zlib error: data error");
    default:
      break;
  }
  if (status < 0) failToUnpack("error " + std::to_string(status));
  return status;
}

std::string unpacked(unzFile archive, const Entry& entry) {
  const auto size = entry.info.uncompressed_size;
  if (size > kLongestManifest) throw std::runtime_error("its manifest.json is too long");
  // The library would unpack both as if they were stored.
  if ((entry.info.flag & kEncrypted) != 0) failToUnpack("No password provided");
  const auto method = entry.info.compression_method;
  if (method != 0 && method != Z_DEFLATED) failToUnpack("Compression method not supported");

  requireUnpacked(unzGoToFilePos64(archive, &entry.place));
  requireUnpacked(unzOpenCurrentFile(archive));
  std::string text(static_cast<std::size_t>(size), '\0');
  const int length = requireUnpacked(
      unzReadCurrentFile(archive, text.data(), static_cast<unsigned int>(text.size())));
  // Closing compares the checksum, if all has been read.
  requireUnpacked(unzCloseCurrentFile(archive));
  if (static_cast<std::size_t>(length) != text.size()) {
    failToUnpack("it is not as long as the archive says");
  }
  return text;
}

}  // namespace

ManifestFile readManifestFile(std::string bytes) {
  const Archive archive = open(bytes);
  const std::vector<Entry> entries = entriesOf(archive.get());
  const std::string folder = onlyFolder(entries);
  const auto manifest = std::find_if(entries.begin(), entries.end(), [&](const Entry& entry) {
    return entry.path == folder + "/manifest.json";
  });
  if (manifest == entries.end()) throw std::runtime_error("its resources hold no manifest.json");
  return {folder, unpacked(archive.get(), *manifest)};
}

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
