#include "filter/number.hpp"

#include <array>
#include <charconv>
#include <cmath>
#include <system_error>
#include <type_traits>

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace detail {

namespace {

constexpr double kTwoTo64 = 18446744073709551616.0;

template <class T>
bool parseAll(const char* begin, const char* end, T& number) {
  const auto result = std::from_chars(begin, end, number);
  return result.ec == std::errc() && result.ptr == end;
}

}  // namespace

Number::Number(double value) {
  if (std::abs(value) < kTwoTo64 && std::trunc(value) == value) {
    isNegative_ = value < 0;
    magnitude_ = static_cast<std::uint64_t>(std::abs(value));
  } else {
    real_ = value;
  }
}

std::optional<Number> Number::parse(const std::string& text) {
  const char* const begin = text.data();
  const char* const end = begin + text.size();
  const bool negative = !text.empty() && text.front() == '-';
  if (std::uint64_t magnitude = 0; parseAll(begin + (negative ? 1 : 0), end, magnitude)) {
    return Number(negative, magnitude);
  }
  if (double real = 0; parseAll(begin, end, real)) return Number(real);
  return std::nullopt;
}

template <class T>
std::optional<Number> Number::ofType(const Any& value) {
  const T* number = any_cast<T>(&value);
  if (!number) return std::nullopt;
  if constexpr (std::is_floating_point_v<T>) {
    return Number(static_cast<double>(*number));
  } else {
    const bool negative = *number < 0;
    const auto bits = static_cast<std::uint64_t>(*number);
    return Number(negative, negative ? 0 - bits : bits);
  }
}

std::optional<Number> Number::of(const Any& value) {
  for (const auto read :
       {ofType<int>, ofType<long>, ofType<long long>, ofType<unsigned>, ofType<unsigned long>,
        ofType<unsigned long long>, ofType<float>, ofType<double>}) {
    if (auto number = read(value)) return number;
  }
  return std::nullopt;
}

bool Number::operator<(const Number& other) const {
  if (real_ && other.real_) return *real_ < *other.real_;
  // One that is no integer of 64 bits lies beyond all of them, or is so small that the integers
  // around it are doubles too.
  const auto asDouble = [](const Number& integer) {
    const auto magnitude = static_cast<double>(integer.magnitude_);
    return integer.isNegative_ ? -magnitude : magnitude;
  };
  if (other.real_) {
    return std::abs(*other.real_) >= kTwoTo64 ? *other.real_ > 0 : asDouble(*this) < *other.real_;
  }
  if (real_) return std::abs(*real_) >= kTwoTo64 ? *real_ < 0 : *real_ < asDouble(other);
  if (isNegative_ != other.isNegative_) return isNegative_;
  return isNegative_ ? magnitude_ > other.magnitude_ : magnitude_ < other.magnitude_;
}

bool Number::operator==(const Number& other) const {
  return real_ == other.real_ && isNegative_ == other.isNegative_ && magnitude_ == other.magnitude_;
}

std::string Number::text() const {
  if (!real_) return (isNegative_ ? "-" : "") + std::to_string(magnitude_);
  std::array<char, 64> text{};
  const auto result = std::to_chars(text.data(), text.data() + text.size(), *real_);
  return {text.data(), result.ptr};
}

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
