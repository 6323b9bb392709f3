#pragma once

/// @file
/// The way back from the model's UTF-16 to UTF-8, and the way there from a view.

#include <string>
#include <string_view>

#include "foundation/export.hpp"

namespace reference_host::i18n {

/// As `fl::i18n::utf8_to_ustring`.
TESSEL_HOST_API std::u16string utf8ToUstring(std::string_view utf8);

/// UTF-16 to UTF-8. Each lone surrogate becomes one U+FFFD, so the conversion never fails.
TESSEL_HOST_API std::string ustringToUtf8(std::u16string_view utf16);

}  // namespace reference_host::i18n
