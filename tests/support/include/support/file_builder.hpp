#pragma once

#include <link.h>

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace service_runtime_test {

/// A file with these bytes that lies in memory.
class MemoryFile {
 public:
  explicit MemoryFile(const std::string& bytes);
  ~MemoryFile();
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

 private:
  const int descriptor_;
};

/// One section of an image.
struct ElfSection {
  std::string name;
  std::string content;
  std::uint32_t type = SHT_PROGBITS;
  std::uint64_t flags = SHF_ALLOC;
};

/// The bytes of an ELF shared library for this machine that has these sections and nothing to load.
/// @param edit changes the header and the table of sections before they are written
std::string elfImage(
    const std::vector<ElfSection>& sections,
    const std::function<void(ElfW(Ehdr) &, std::vector<ElfW(Shdr)>&)>& edit = nullptr);

/// How the content of an entry lies in an archive, by the numbers of the zip format.
enum class Packing { kStored = 0, kDeflated = 8 };

/// The bytes of a zip archive with these entries: path and content.
std::string zipArchive(const std::vector<std::pair<std::string, std::string>>& entries,
                       Packing packing = Packing::kStored);

/// The sections of a bundle with that archive, for this runtime.
std::vector<ElfSection> bundleSections(const std::string& archive);

/// The bytes of a bundle named "crafted" with that manifest.
std::string craftedBundle(const std::string& manifest);

/// A manifest that is right: the bundle "crafted" without components.
extern const char* const kCraftedManifest;

}  // namespace service_runtime_test
