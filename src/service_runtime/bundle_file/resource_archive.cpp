#include "bundle_file/resource_archive.hpp"

#include <zip.h>

#include <memory>
#include <mutex>
#include <set>
#include <stdexcept>

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace detail {

namespace {

constexpr zip_uint64_t kLongestManifest = 4U << 20U;
constexpr zip_int64_t kMostEntries = 10000;

struct Discard {
  void operator()(zip_t* archive) const { zip_discard(archive); }
  void operator()(zip_file_t* file) const { zip_fclose(file); }
};
using Archive = std::unique_ptr<zip_t, Discard>;
using File = std::unique_ptr<zip_file_t, Discard>;

class Error {
 public:
  Error() { zip_error_init(&error_); }
  ~Error() { zip_error_fini(&error_); }
  Error(const Error&) = delete;
  Error& operator=(const Error&) = delete;
  zip_error_t* get() { return &error_; }
  std::string text() { return zip_error_strerror(&error_); }

 private:
  zip_error_t error_{};
};

Archive open(const std::string& bytes) {
  Error error;
  zip_source_t* source =
      zip_source_buffer_create(bytes.data(), bytes.size(), /*freep=*/0, error.get());
  // Opening takes the source over, unless it fails.
  zip_t* archive = source ? zip_open_from_source(source, ZIP_RDONLY, error.get()) : nullptr;
  if (!archive) {
    if (source) zip_source_free(source);
    throw std::runtime_error("its resources are no zip archive: " + error.text());
  }
  return Archive(archive);
}

/// The one folder that everything in the archive lies in.
std::string onlyFolder(zip_t* archive) {
  const zip_int64_t count = zip_get_num_entries(archive, 0);
  if (count > kMostEntries) throw std::runtime_error("its resources have too many entries");
  std::set<std::string> folders;
  for (zip_int64_t i = 0; i < count; ++i) {
    const char* name = zip_get_name(archive, static_cast<zip_uint64_t>(i), ZIP_FL_ENC_RAW);
    const std::string path = name ? name : "";
    const std::size_t slash = path.find('/');
    if (slash == 0 || slash == std::string::npos) {
      throw std::runtime_error("its resources have an entry outside a folder: \"" + path + "\"");
    }
    folders.insert(path.substr(0, slash));
  }
  if (folders.size() > 1) {
    throw std::runtime_error("its resources have several folders: \"" + *folders.begin() +
                             "\" and \"" + *std::next(folders.begin()) + "\"");
  }
  return folders.empty() ? std::string() : *folders.begin();
}

}  // namespace

ManifestFile readManifestFile(const std::string& archive) {
  // libzip converts the times of the entries with the C library's time zone, which is one for the
  // whole process; race detectors do not see the C library's own lock.
  static std::mutex mutex;
  const std::lock_guard lock(mutex);
  const Archive zip = open(archive);
  ManifestFile manifest{onlyFolder(zip.get()), {}};

  const std::string path = manifest.folder + "/manifest.json";
  zip_stat_t stat{};
  if (zip_stat(zip.get(), path.c_str(), ZIP_FL_ENC_RAW, &stat) != 0) {
    throw std::runtime_error("its resources hold no manifest.json");
  }
  if ((stat.valid & ZIP_STAT_SIZE) == 0 || stat.size > kLongestManifest) {
    throw std::runtime_error("its manifest.json is too long");
  }
  const auto fail = [](const std::string& reason) {
    throw std::runtime_error("its manifest.json cannot be unpacked: " + reason);
  };
  const File file(zip_fopen_index(zip.get(), stat.index, 0));
  if (!file) fail(zip_strerror(zip.get()));
  manifest.text.resize(static_cast<std::size_t>(stat.size));
  const zip_int64_t length = zip_fread(file.get(), manifest.text.data(), manifest.text.size());
  // One more byte than promised: the end is where the checksum is compared.
  char beyond = 0;
  const zip_int64_t further = length < 0 ? -1 : zip_fread(file.get(), &beyond, 1);
  if (further < 0) fail(zip_file_strerror(file.get()));
  // libzip finds nothing wrong with an entry that is not as long as its header says.
  if (further > 0 || static_cast<zip_uint64_t>(length) != stat.size) {
    fail("it is not as long as the archive says");
  }
  return manifest;
}

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
