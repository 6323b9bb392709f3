#include "json/number.hpp"

#include <locale>
#include <sstream>
#include <string>

namespace reference_host::json {

namespace {

/// Walks through a number.
class Scanner {
 public:
  explicit Scanner(std::string_view text) noexcept : text_(text) {}

  std::size_t position() const noexcept { return position_; }

  bool skipOneOf(std::string_view characters) noexcept {
    if (position_ == text_.size()) return false;
    if (characters.find(text_[position_]) == std::string_view::npos) return false;
    ++position_;
    return true;
  }

  std::size_t skipDigits() noexcept {
    const std::size_t start = position_;
    while (skipOneOf("0123456789")) {
    }
    return position_ - start;
  }

 private:
  std::string_view text_;
  std::size_t position_ = 0;
};

const char* firstFault(Scanner& scanner) noexcept {
  scanner.skipOneOf("-");
  const bool startsWithZero = scanner.skipOneOf("0");
  const std::size_t digits = scanner.skipDigits();
  if (startsWithZero && digits > 0) return "number with a leading zero";
  if (!startsWithZero && digits == 0) return "minus sign without a number";
  if (scanner.skipOneOf(".") && scanner.skipDigits() == 0) {
    return "number without digits after its decimal point";
  }
  if (scanner.skipOneOf("eE")) {
    scanner.skipOneOf("+-");
    if (scanner.skipDigits() == 0) return "number without digits in its exponent";
  }
  return nullptr;
}

}  // namespace

NumberScan scanNumber(std::string_view text) noexcept {
  Scanner scanner(text);
  const char* const fault = firstFault(scanner);
  return {scanner.position(), fault};
}

std::optional<double> nearestDouble(std::string_view number) {
  // A stream of the classic locale reads the same everywhere, unlike strtod.
  std::istringstream stream{std::string(number)};
  stream.imbue(std::locale::classic());
  // Else a stream that finds no memory would leave 0 behind and say nothing.
  stream.exceptions(std::ios_base::badbit);
  double value = 0;
  stream >> value;
  // Too large leaves the largest double and fails; too small may fail, but leaves what is nearest.
  const bool isTiny = value < 1 && value > -1;
  if (stream.fail() && !isTiny) return std::nullopt;
  return value;
}

}  // namespace reference_host::json
