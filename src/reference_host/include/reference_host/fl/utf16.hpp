#pragma once

/// @file
/// The way back from the model's UTF-16 to UTF-8, and both conversions piece by piece.

#include <cstddef>
#include <string>
#include <string_view>

#include "foundation/export.hpp"

namespace reference_host::i18n {

/// UTF-16 to UTF-8. Each lone surrogate becomes one U+FFFD, so the conversion never fails.
TESSEL_HOST_API std::string ustringToUtf8(std::u16string_view utf16);

/// The longest part of a text, in code units, that one call of the conversion library takes; its
/// lengths are 32 bits wide, and a UTF-16 unit may become three bytes.
constexpr std::size_t kLongestPiece = std::size_t{1} << 29U;

/// As `fl::i18n::utf8_to_ustring`, in pieces of at most this many bytes (4 or more). The result
/// does not depend on the piece length.
TESSEL_HOST_API std::u16string utf8ToUstring(std::string_view utf8,
                                             std::size_t longestPiece = kLongestPiece);

/// As above, in pieces of at most this many UTF-16 units (2 or more).
TESSEL_HOST_API std::string ustringToUtf8(std::u16string_view utf16, std::size_t longestPiece);

}  // namespace reference_host::i18n
