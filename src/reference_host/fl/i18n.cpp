#include "fl/i18n.hpp"

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "reference_host/fl/utf16.hpp"

namespace reference_host::i18n {

namespace {

bool isAscii(std::string_view utf8) noexcept {
  std::uint64_t seen = 0;
  for (; utf8.size() >= sizeof seen; utf8.remove_prefix(sizeof seen)) {
    std::uint64_t units = 0;
    std::memcpy(&units, utf8.data(), sizeof units);
    seen |= units;
  }
  for (const char unit : utf8) seen |= static_cast<unsigned char>(unit);
  return (seen & 0x8080808080808080U) == 0;
}

}  // namespace

std::u16string utf8ToUstring(std::string_view utf8) {
  if (isAscii(utf8)) return {utf8.begin(), utf8.end()};
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(utf8.data());
  std::u16string utf16(utf8.size(), u'\0');
  std::size_t length = 0;
  for (std::size_t index = 0; index != utf8.size();) {
    UChar32 codePoint = 0;
    U8_NEXT_OR_FFFD(bytes, index, utf8.size(), codePoint);
    U16_APPEND_UNSAFE(utf16, length, codePoint);
  }
  utf16.resize(length);
  return utf16;
}

std::string ustringToUtf8(std::u16string_view utf16) {
  constexpr std::size_t kGrowth = 3;  // bytes that a unit may become
  std::string utf8(utf16.size() * kGrowth, '\0');
  std::size_t length = 0;
  for (std::size_t index = 0; index != utf16.size();) {
    UChar32 codePoint = 0;
    U16_NEXT_OR_FFFD(utf16, index, utf16.size(), codePoint);
    U8_APPEND_UNSAFE(utf8, length, codePoint);
  }
  utf8.resize(length);
  return utf8;
}

}  // namespace reference_host::i18n

namespace fl::i18n {

std::u16string utf8_to_ustring(const std::string& utf8) {
  return reference_host::i18n::utf8ToUstring(utf8);
}

}  // namespace fl::i18n
