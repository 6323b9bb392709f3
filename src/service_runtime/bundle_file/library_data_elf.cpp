// The data lies in sections of an ELF file.

#include "bundle_file/library_data.hpp"

#include <fcntl.h>
#include <gelf.h>
#include <link.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <system_error>

/// The header of the ELF file that this code is in, as linkers define it: a library can be loaded
/// beside it if it is for the same machine.
extern "C" __attribute__((visibility("hidden"))) const ElfW(Ehdr) __ehdr_start;  // NOLINT

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace detail {

namespace {

constexpr std::uint64_t kLongestMarker = 256;
constexpr std::uint64_t kLongestArchive = 64U << 20U;

class OpenFile {
 public:
  explicit OpenFile(const std::filesystem::path& path)
      : descriptor_(::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
    if (descriptor_ < 0) {
      throw std::runtime_error("cannot be read: " + std::generic_category().message(errno));
    }
  }
  ~OpenFile() { ::close(descriptor_); }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  int descriptor() const { return descriptor_; }

 private:
  const int descriptor_;
};

void requireOwnKind(Elf* elf) {
  GElf_Ehdr header{};
  if (elf_kind(elf) != ELF_K_ELF || gelf_getehdr(elf, &header) == nullptr) {
    throw std::runtime_error("is not an ELF file");
  }
  const auto isOwn = [&](int index) {
    return header.e_ident[index] == __ehdr_start.e_ident[index];
  };
  if (!isOwn(EI_CLASS) || !isOwn(EI_DATA) || header.e_machine != __ehdr_start.e_machine) {
    throw std::runtime_error("is an ELF file for another machine");
  }
  if (header.e_type != ET_DYN) throw std::runtime_error("is not a shared library");
}

/// The content of the section of that name; nothing if there is no such section.
std::optional<std::string> section(Elf* elf, std::string_view name, std::uint64_t limit) {
  const auto fault = [name](const char* what) {
    return std::runtime_error("its section " + std::string(name) + " " + what);
  };
  std::size_t names = 0;
  if (elf_getshdrstrndx(elf, &names) != 0) return std::nullopt;
  std::optional<std::string> content;
  for (Elf_Scn* at = nullptr; (at = elf_nextscn(elf, at)) != nullptr;) {
    GElf_Shdr header{};
    if (gelf_getshdr(at, &header) == nullptr) continue;
    const char* const found = elf_strptr(elf, names, header.sh_name);
    if (found == nullptr || found != name) continue;
    if (content) throw std::runtime_error("has two sections " + std::string(name));
    if (header.sh_type == SHT_NOBITS || (header.sh_flags & SHF_COMPRESSED) != 0) {
      throw fault("holds no plain bytes");
    }
    if (header.sh_size > limit) throw fault("is too long");
    const Elf_Data* const data = elf_rawdata(at, nullptr);
    if (data == nullptr) throw fault("lies outside the file");
    content.emplace(static_cast<const char*>(data->d_buf), data->d_size);
  }
  return content;
}

}  // namespace

LibraryData readLibraryData(const std::filesystem::path& path) {
  const OpenFile file(path);
  elf_version(EV_CURRENT);
  const std::unique_ptr<Elf, int (*)(Elf*)> elf(elf_begin(file.descriptor(), ELF_C_READ, nullptr),
                                                &elf_end);
  requireOwnKind(elf.get());
  auto archive = section(elf.get(), ".us_resources", kLongestArchive);
  if (!archive) throw std::runtime_error("is not a bundle: it has no section .us_resources");
  auto marker = section(elf.get(), ".tessel_runtime", kLongestMarker);
  if (!marker) {
    throw std::runtime_error(
        "was not built for the embedded service runtime: it has no section .tessel_runtime");
  }
  return {*std::move(archive), *std::move(marker)};
}

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
