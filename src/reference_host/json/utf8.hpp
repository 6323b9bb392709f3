#pragma once

/// @file
/// One step through UTF-8 text that need not be well-formed.

#include <unicode/utf8.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace reference_host::json {

/// What stands at the start of a text: a code point, or a maximal ill-formed part.
struct Utf8Step {
  std::size_t length;  ///< in bytes, at least 1
  bool wellFormed;
  std::int32_t codePoint;  ///< negative where it is ill-formed
};

/// @pre the text is not empty.
inline Utf8Step firstUtf8Step(std::string_view text) noexcept {
  constexpr std::size_t kLongestSequence = 4;
  const auto size = static_cast<std::int32_t>(std::min(text.size(), kLongestSequence));
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  std::int32_t length = 0;
  UChar32 codePoint = 0;
  U8_NEXT(bytes, length, size, codePoint);
  return {static_cast<std::size_t>(length), codePoint >= 0, codePoint};
}

}  // namespace reference_host::json
