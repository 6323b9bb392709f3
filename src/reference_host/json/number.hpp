#pragma once

/// @file
/// JSON numbers as text: their grammar, and the double that one stands for.

#include <cstddef>
#include <optional>
#include <string_view>

namespace reference_host::json {

/// The number at the start of a text.
struct NumberScan {
  std::size_t length;  ///< how many characters belong to it, up to a fault
  const char* fault;   ///< the reason when it is malformed, else null
};

/// @pre the text starts with a minus sign or a digit.
NumberScan scanNumber(std::string_view text) noexcept;

/// The double nearest to a well-formed number, or nothing when the number is too large for one. A
/// number too small is 0 with its sign. Slow, but right for any number of digits.
std::optional<double> nearestDouble(std::string_view number);

}  // namespace reference_host::json
