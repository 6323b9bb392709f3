#pragma once

/// @file
/// The i18n library: text conversion.

#include <string>

#include "foundation/export.hpp"

namespace fl::i18n {

/// UTF-8 to UTF-16. Each maximal ill-formed part of the input becomes one U+FFFD, so the
/// conversion never fails.
TESSEL_HOST_API std::u16string utf8_to_ustring(const std::string& utf8);

}  // namespace fl::i18n
