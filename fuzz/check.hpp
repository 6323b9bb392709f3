#pragma once

/// @file
/// What every fuzz target shares: its entry point, and how it objects.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string_view>

/// Runs the target on one input; called by the fuzzer, or by the plain driver.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz {

/// Ends the program when the code breaks a promise. The fuzzer then keeps the input.
inline void require(bool holds, std::string_view promise) {
  if (holds) return;
  std::cerr << "broken: " << promise << std::endl;
  std::abort();
}

/// The same for two texts that have to be equal; shows both.
inline void requireEqual(std::string_view actual, std::string_view expected,
                         std::string_view promise) {
  if (actual == expected) return;
  std::cerr << "actual:   " << actual << "\nexpected: " << expected << '\n';
  require(false, promise);
}

inline std::string_view asText(const std::uint8_t* data, std::size_t size) {
  return size == 0 ? std::string_view()
                   : std::string_view(reinterpret_cast<const char*>(data), size);
}

}  // namespace fuzz
