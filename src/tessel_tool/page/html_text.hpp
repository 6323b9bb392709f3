#pragma once

/// @file
/// A text made of very many small pieces.

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

namespace tessel_tool {

/// Like a string, but for what appending a few characters costs: nothing is called for them.
class HtmlText {
 public:
  std::size_t size() const noexcept { return size_; }
  std::string_view view() const noexcept { return {storage_.data(), size_}; }
  void clear() noexcept { size_ = 0; }
  /// @param size not above the present one.
  void truncate(std::size_t size) noexcept { size_ = size; }

  HtmlText& operator+=(char character) {
    *grow(1) = character;
    return *this;
  }
  HtmlText& operator+=(std::string_view piece) {
    if (!piece.empty()) std::memcpy(grow(piece.size()), piece.data(), piece.size());
    return *this;
  }
  /// Makes room behind the text. @return where to write it.
  char* grow(std::size_t length) {
    const std::size_t begin = size_;
    if (storage_.size() - begin < length) enlarge(length);
    size_ = begin + length;
    return storage_.data() + begin;
  }

 private:
  void enlarge(std::size_t length) {
    constexpr std::size_t kLeast = 256;
    storage_.resize(std::max({kLeast, 2 * storage_.size(), size_ + length}));
  }

  std::string storage_;  // the text, and room behind it
  std::size_t size_ = 0;
};

}  // namespace tessel_tool
