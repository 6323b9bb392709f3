#include "elf_file.hpp"

#include <cstring>
#include <stdexcept>

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace detail {

namespace {

constexpr unsigned char kNativeClass = sizeof(void*) == 8 ? ELFCLASS64 : ELFCLASS32;
#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
constexpr unsigned char kNativeData = ELFDATA2LSB;
#else
constexpr unsigned char kNativeData = ELFDATA2MSB;
#endif

#if defined(__x86_64__)
constexpr std::uint16_t kNativeMachine = EM_X86_64;
#elif defined(__i386__)
constexpr std::uint16_t kNativeMachine = EM_386;
#elif defined(__aarch64__)
constexpr std::uint16_t kNativeMachine = EM_AARCH64;
#elif defined(__arm__)
constexpr std::uint16_t kNativeMachine = EM_ARM;
#elif defined(__riscv)
constexpr std::uint16_t kNativeMachine = EM_RISCV;
#elif defined(__powerpc64__)
constexpr std::uint16_t kNativeMachine = EM_PPC64;
#elif defined(__s390__)
constexpr std::uint16_t kNativeMachine = EM_S390;
#else
#error "add this machine's number from elf.h"
#endif

constexpr std::uint64_t kLongestNameTable = 16U << 20U;

[[noreturn]] void fail(const std::string& reason) {
  throw std::runtime_error("is not an ELF shared library: " + reason);
}

std::uint64_t sizeOf(std::istream& file) {
  file.clear();
  file.seekg(0, std::ios::end);
  const std::streamoff size = file.tellg();
  if (!file || size < 0) throw std::runtime_error("cannot be read");
  return static_cast<std::uint64_t>(size);
}

bool liesWithin(std::uint64_t offset, std::uint64_t length, std::uint64_t size) {
  return offset <= size && length <= size - offset;
}

/// Reads bytes that are known to lie within the file.
void readAt(std::istream& file, std::uint64_t offset, char* bytes, std::uint64_t length) {
  file.clear();
  file.seekg(static_cast<std::streamoff>(offset));
  file.read(bytes, static_cast<std::streamsize>(length));
  if (!file) throw std::runtime_error("cannot be read");
}

}  // namespace

ElfFile::ElfFile(std::istream& file) : file_(file), size_(sizeOf(file)) {
  ElfW(Ehdr) header{};
  if (size_ < sizeof header) fail("it is shorter than an ELF header");
  readAt(file_, 0, reinterpret_cast<char*>(&header), sizeof header);
  if (std::memcmp(&header.e_ident[EI_MAG0], ELFMAG, SELFMAG) != 0) {
    fail("it does not begin with the ELF mark");
  }
  if (header.e_ident[EI_CLASS] != kNativeClass || header.e_ident[EI_DATA] != kNativeData ||
      header.e_machine != kNativeMachine) {
    throw std::runtime_error("is an ELF file for another machine");
  }
  if (header.e_type != ET_DYN) fail("it is of another ELF type");
  if (header.e_shnum == 0 || header.e_shentsize != sizeof(ElfW(Shdr))) {
    fail("it has no table of sections");
  }
  const std::uint64_t tableSize = std::uint64_t{header.e_shnum} * sizeof(ElfW(Shdr));
  if (!liesWithin(header.e_shoff, tableSize, size_)) {
    fail("its table of sections lies outside the file");
  }
  headers_.resize(header.e_shnum);
  readAt(file_, header.e_shoff, reinterpret_cast<char*>(headers_.data()), tableSize);

  if (header.e_shstrndx >= headers_.size()) fail("it has no table of section names");
  const ElfW(Shdr)& table = headers_[header.e_shstrndx];
  if (table.sh_type != SHT_STRTAB || table.sh_size > kLongestNameTable ||
      !liesWithin(table.sh_offset, table.sh_size, size_)) {
    fail("its table of section names lies outside the file");
  }
  names_.resize(static_cast<std::size_t>(table.sh_size));
  readAt(file_, table.sh_offset, names_.data(), table.sh_size);
}

std::string_view ElfFile::nameOf(const ElfW(Shdr) & header) const {
  if (header.sh_name >= names_.size()) return {};
  const std::string_view rest = std::string_view(names_).substr(header.sh_name);
  const std::size_t end = rest.find('\0');
  return end == std::string_view::npos ? std::string_view() : rest.substr(0, end);
}

std::optional<std::string> ElfFile::section(std::string_view name, std::uint64_t limit) {
  const ElfW(Shdr)* found = nullptr;
  for (const ElfW(Shdr) & header : headers_) {
    if (nameOf(header) != name) continue;
    if (found) throw std::runtime_error("has two sections " + std::string(name));
    found = &header;
  }
  if (!found) return std::nullopt;
  const auto fault = [name](const char* what) {
    return std::runtime_error("its section " + std::string(name) + " " + what);
  };
  if (found->sh_type == SHT_NOBITS || (found->sh_flags & SHF_COMPRESSED) != 0) {
    throw fault("holds no plain bytes");
  }
  if (found->sh_size > limit) throw fault("is too long");
  if (!liesWithin(found->sh_offset, found->sh_size, size_)) throw fault("lies outside the file");
  std::string content(static_cast<std::size_t>(found->sh_size), '\0');
  readAt(file_, found->sh_offset, content.data(), found->sh_size);
  return content;
}

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
