#pragma once

/// @file
/// The fuzzer's bytes as a sequence of choices.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

namespace fuzz {

/// Reads from the front. Past the end it reads zeros, so that every choice is the first one.
class ByteReader {
 public:
  ByteReader(const std::uint8_t* data, std::size_t size) : data_(data), left_(size) {}

  bool atEnd() const { return left_ == 0; }

  std::uint8_t byte() {
    if (left_ == 0) return 0;
    --left_;
    return *data_++;
  }

  /// One of the numbers from 0 to below `count`, which is at most 256.
  std::size_t below(std::size_t count) { return byte() % count; }

  /// A value of the type, bit by bit.
  template <typename T>
  T bits() {
    unsigned char bytes[sizeof(T)];
    for (unsigned char& each : bytes) each = byte();
    T value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
  }

  /// Up to 15 bytes, whatever they are.
  std::string text() {
    std::string result;
    for (std::size_t length = below(16); length > 0 && !atEnd(); --length) {
      result += static_cast<char>(byte());
    }
    return result;
  }

 private:
  const std::uint8_t* data_;
  std::size_t left_;
};

}  // namespace fuzz
