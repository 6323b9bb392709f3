#pragma once

/// @file
/// Text conversion of the second host, whose documents are plain ASCII.

#include <string>

namespace fl::i18n {

inline std::u16string utf8_to_ustring(const std::string& text) {
  return {text.begin(), text.end()};
}

}  // namespace fl::i18n
