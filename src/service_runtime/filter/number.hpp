#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "cppmicroservices/Any.h"

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace detail {

/// A number that compares by its exact value, whatever type it comes from and on every platform: an
/// integer, if 64 bits and a sign hold it, else a double.
class Number {
 public:
  /// The number that all of the text is; nothing if it is none or lies beyond all doubles.
  static std::optional<Number> parse(const std::string& text);
  /// The value as a number, if it is of an arithmetic type other than bool and characters.
  static std::optional<Number> of(const Any& value);

  bool operator<(const Number& other) const;
  bool operator==(const Number& other) const;
  bool operator<=(const Number& other) const { return *this < other || *this == other; }

  /// The same text for equal numbers, another one for others.
  std::string text() const;

 private:
  explicit Number(double value);
  Number(bool negative, std::uint64_t magnitude)
      : isNegative_(negative && magnitude != 0), magnitude_(magnitude) {}
  template <class T>
  static std::optional<Number> ofType(const Any& value);

  std::optional<double> real_;  ///< if it is no such integer
  bool isNegative_ = false;
  std::uint64_t magnitude_ = 0;
};

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
