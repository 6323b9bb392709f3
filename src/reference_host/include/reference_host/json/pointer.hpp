#pragma once

/// @file
/// JSON pointers (RFC 6901) and their reference tokens.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace reference_host::json {

/// Appends the reference token that stands for a member's name, with its slash.
inline void appendToken(std::string& pointer, std::string_view name) {
  pointer += '/';
  for (const char character : name) {
    if (character == '~') {
      pointer += "~0";
    } else if (character == '/') {
      pointer += "~1";
    } else {
      pointer += character;
    }
  }
}

/// Whether a text is a JSON pointer.
inline bool isPointer(std::string_view text) {
  if (!text.empty() && text.front() != '/') return false;
  for (std::size_t tilde = 0; (tilde = text.find('~', tilde)) != std::string_view::npos;) {
    ++tilde;
    if (tilde == text.size() || (text[tilde] != '0' && text[tilde] != '1')) return false;
  }
  return true;
}

/// The reference tokens of a pointer, as they are written in it.
/// @pre the pointer is empty or begins with a slash.
inline std::vector<std::string_view> tokensOf(std::string_view pointer) {
  std::vector<std::string_view> tokens;
  while (!pointer.empty()) {
    pointer.remove_prefix(1);
    tokens.push_back(pointer.substr(0, pointer.find('/')));
    pointer.remove_prefix(tokens.back().size());
  }
  return tokens;
}

/// The member's name that a reference token stands for.
inline std::string nameOf(std::string_view token) {
  std::string name;
  while (!token.empty()) {
    const std::size_t length = token.find('~');
    name += token.substr(0, length);
    if (length == std::string_view::npos) break;
    token.remove_prefix(length + 1);
    name += !token.empty() && token.front() == '1' ? '/' : '~';
    if (!token.empty()) token.remove_prefix(1);
  }
  return name;
}

}  // namespace reference_host::json
