#include "support/file_builder.hpp"

#include <sys/mman.h>
#include <unistd.h>
#include <zip.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace service_runtime_test {

namespace {

template <class T>
void append(std::string& bytes, const T& value) {
  bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
}

}  // namespace

MemoryFile::MemoryFile(const std::string& bytes)
    : descriptor_(memfd_create("bundle", MFD_CLOEXEC)) {
  const auto length = static_cast<ssize_t>(bytes.size());
  if (descriptor_ < 0 || write(descriptor_, bytes.data(), bytes.size()) != length) {
    throw std::logic_error("cannot make a file in memory");
  }
}

MemoryFile::~MemoryFile() {
  close(descriptor_);
}

const char* const kCraftedManifest = R"({"bundle.symbolic_name": "crafted"})";

std::string elfImage(const std::vector<ElfSection>& sections,
                     const std::function<void(ElfW(Ehdr) &, std::vector<ElfW(Shdr)>&)>& edit) {
  // The file that is being built tells class, byte order and machine of this machine: the test's
  // own.
  static const ElfW(Ehdr) kOwn = [] {
    ElfW(Ehdr) header{};
    std::FILE* const self = std::fopen("/proc/self/exe", "rb");
    const bool read = self && std::fread(&header, sizeof header, 1, self) == 1;
    if (self) std::fclose(self);
    if (!read) throw std::runtime_error("cannot read /proc/self/exe");
    return header;
  }();

  std::string body;
  std::string names(1, '\0');
  std::vector<ElfW(Shdr)> headers(1);
  const auto add = [&](const ElfSection& section) {
    ElfW(Shdr) header{};
    header.sh_name = static_cast<std::uint32_t>(names.size());
    header.sh_type = section.type;
    header.sh_flags = section.flags;
    header.sh_offset = sizeof(ElfW(Ehdr)) + body.size();
    header.sh_size = section.content.size();
    names += section.name + '\0';
    body += section.content;
    headers.push_back(header);
  };
  for (const ElfSection& section : sections) add(section);
  add({".shstrtab", names + std::string(".shstrtab") + '\0', SHT_STRTAB, 0});

  ElfW(Ehdr) header{};
  std::memcpy(header.e_ident, kOwn.e_ident, EI_NIDENT);
  header.e_type = ET_DYN;
  header.e_machine = kOwn.e_machine;
  header.e_version = EV_CURRENT;
  header.e_ehsize = sizeof header;
  header.e_shentsize = sizeof(ElfW(Shdr));
  header.e_shnum = static_cast<std::uint16_t>(headers.size());
  header.e_shstrndx = static_cast<std::uint16_t>(headers.size() - 1);
  header.e_shoff = sizeof header + body.size();
  if (edit) edit(header, headers);

  std::string bytes;
  append(bytes, header);
  bytes += body;
  for (const ElfW(Shdr) & section : headers) append(bytes, section);
  return bytes;
}

std::string zipArchive(const std::vector<std::pair<std::string, std::string>>& entries,
                       Packing packing) {
  const MemoryFile file("");
  const zipFile archive = zipOpen64(file.path().c_str(), APPEND_STATUS_CREATE);
  const auto require = [](bool holds) {
    if (!holds) throw std::runtime_error("cannot make an archive");
  };
  require(archive != nullptr);
  for (const auto& [path, content] : entries) {
    const zip_fileinfo info{};
    require(zipOpenNewFileInZip64(archive, path.c_str(), &info, nullptr, 0, nullptr, 0, nullptr,
                                  static_cast<int>(packing), Z_DEFAULT_COMPRESSION, 0) == ZIP_OK &&
            zipWriteInFileInZip(archive, content.data(),
                                static_cast<unsigned int>(content.size())) == ZIP_OK &&
            zipCloseFileInZip(archive) == ZIP_OK);
  }
  require(zipClose(archive, nullptr) == ZIP_OK);
  std::ifstream bytes(file.path(), std::ios::binary);
  return {std::istreambuf_iterator<char>(bytes), {}};
}

std::vector<ElfSection> bundleSections(const std::string& archive) {
  return {{".us_resources", archive}, {".tessel_runtime", "embedded_v1"}};
}

std::string craftedBundle(const std::string& manifest) {
  return elfImage(bundleSections(zipArchive({{"crafted/manifest.json", manifest}})));
}

}  // namespace service_runtime_test
