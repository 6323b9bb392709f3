#include "fl/i18n.hpp"

#include <unicode/ustring.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <stdexcept>

#include "reference_host/fl/utf16.hpp"

namespace reference_host::i18n {

namespace {

constexpr UChar32 kReplacement = 0xFFFD;

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

/// The length of the next piece: as long as allowed, without cutting a sequence in two.
std::int32_t pieceLength(std::string_view utf8, std::size_t longestPiece) {
  auto length = static_cast<std::int32_t>(std::min(utf8.size(), longestPiece));
  if (utf8.size() > longestPiece) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(utf8.data());
    U8_TRUNCATE_IF_INCOMPLETE(bytes, 0, length);
  }
  return length;
}

std::int32_t pieceLength(std::u16string_view utf16, std::size_t longestPiece) {
  auto length = static_cast<std::int32_t>(std::min(utf16.size(), longestPiece));
  if (utf16.size() > longestPiece && U16_IS_LEAD(utf16[longestPiece - 1])) --length;
  return length;
}

void convert(std::string_view utf8, char16_t* target, std::int32_t capacity, std::int32_t* written,
             UErrorCode* status) {
  u_strFromUTF8WithSub(target, capacity, written, utf8.data(),
                       static_cast<std::int32_t>(utf8.size()), kReplacement, nullptr, status);
}

void convert(std::u16string_view utf16, char* target, std::int32_t capacity, std::int32_t* written,
             UErrorCode* status) {
  u_strToUTF8WithSub(target, capacity, written, utf16.data(),
                     static_cast<std::int32_t>(utf16.size()), kReplacement, nullptr, status);
}

/// Converts piece by piece; a source unit becomes at most `growth` target units.
template <typename Target, typename Source>
Target convertAll(Source source, std::size_t longestPiece, std::size_t growth) {
  Target out;
  std::size_t length = 0;
  while (!source.empty()) {
    const Source piece =
        source.substr(0, static_cast<std::size_t>(pieceLength(source, longestPiece)));
    const std::size_t room = piece.size() * growth;
    out.resize(length + room);
    std::int32_t written = 0;
    UErrorCode status = U_ZERO_ERROR;
    convert(piece, out.data() + length, static_cast<std::int32_t>(room), &written, &status);
    if (U_FAILURE(status)) throw std::runtime_error(u_errorName(status));
    length += static_cast<std::size_t>(written);
    source.remove_prefix(piece.size());
  }
  out.resize(length);
  return out;
}

}  // namespace

std::u16string utf8ToUstring(std::string_view utf8, std::size_t longestPiece) {
  // Most texts are short and plain; for them the call of the library costs more than the work.
  if (isAscii(utf8)) return std::u16string(utf8.begin(), utf8.end());
  return convertAll<std::u16string>(utf8, longestPiece, 1);
}

std::string ustringToUtf8(std::u16string_view utf16) {
  return ustringToUtf8(utf16, kLongestPiece);
}

std::string ustringToUtf8(std::u16string_view utf16, std::size_t longestPiece) {
  return convertAll<std::string>(utf16, longestPiece, 3);
}

}  // namespace reference_host::i18n

namespace fl::i18n {

std::u16string utf8_to_ustring(const std::string& utf8) {
  return reference_host::i18n::utf8ToUstring(utf8);
}

}  // namespace fl::i18n
