#pragma once

#include <link.h>

#include <cstdint>
#include <istream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace detail {

/// The sections of an ELF shared library for this machine. The bytes are not trusted: every offset
/// and size is held against the size of the file before anything is read or allocated.
class ElfFile {
 public:
  /// @param file a stream that can be repositioned; it has to outlive this object
  /// @throws std::runtime_error if it is no ELF shared library for this machine
  explicit ElfFile(std::istream& file);

  /// The content of the section of that name; nothing if there is no such section.
  /// @throws std::runtime_error if there are two, or its content is not in the file as it is, is
  ///         longer than `limit`, or lies outside the file
  std::optional<std::string> section(std::string_view name, std::uint64_t limit);

 private:
  std::string_view nameOf(const ElfW(Shdr) & header) const;

  std::istream& file_;
  std::uint64_t size_;
  std::vector<ElfW(Shdr)> headers_;
  std::string names_;
};

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
