#include "reference_host/json/syntax_check.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <string>
#include <vector>

#include "json/number.hpp"
#include "json/utf8.hpp"
#include "reference_host/json/parse.hpp"
#include "reference_host/json/text_places.hpp"

namespace reference_host::json {

namespace {

bool isSpace(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}
bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool isAscii(char c) {
  return static_cast<unsigned char>(c) < 0x80U;
}
bool isControl(char c) {
  return static_cast<unsigned char>(c) < 0x20U;
}

bool isHexadecimal(char c) {
  return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

/// A character for a message: itself if it is visible, else its code point.
std::string describe(std::int32_t codePoint) {
  if (codePoint > 0x20 && codePoint < 0x7F) return {'\'', static_cast<char>(codePoint), '\''};
  if (codePoint == 0xFEFF) return "a byte order mark (U+FEFF)";
  if (codePoint == 0) return "a NUL (U+0000)";
  std::array<char, 16> digits{};
  std::snprintf(digits.data(), digits.size(), "U+%04X", static_cast<unsigned>(codePoint));
  return digits.data();
}

/// True when a well-formed number is so large that no double holds it.
bool isTooLarge(std::string_view number) {
  // Without an exponent it takes more digits than the largest double has.
  constexpr std::size_t kLargestDigits = std::numeric_limits<double>::max_exponent10;
  if (number.size() <= kLargestDigits && number.find_first_of("eE") == std::string_view::npos) {
    return false;
  }
  return !nearestDouble(number).has_value();
}

/// Walks through a text once, token by token. A fault ends the walk as a `ParseError`.
class SyntaxChecker {
 public:
  explicit SyntaxChecker(std::string_view text) : text_(text) {}

  void checkText();

 private:
  [[noreturn]] void refuse(std::size_t offset, const std::string& reason) const;
  /// Refuses the current character, or the text's end.
  [[noreturn]] void refuseNext(const std::string& reason) const;
  [[noreturn]] void refuseEnd() const;

  bool atEnd() const { return position_ == text_.size(); }
  bool nextIs(char c) const { return !atEnd() && text_[position_] == c; }
  void skipSpace();

  /// Passes a scalar, or the opening of a container and what its first value needs before it.
  /// @return whether the value is complete.
  bool passValueStart();
  bool passOpening();
  /// Passes closings and a comma after a value.
  /// @return whether another value has to follow.
  bool passValueEnd();
  void passMemberName();
  void passLiteral();
  void passNumber();
  void passString();
  void passEscape(std::size_t string);
  /// The code unit of the `\u` escape here, if it is one.
  bool readUnicodeEscape(unsigned& unit);

  std::string_view text_;
  std::size_t position_ = 0;
  /// Where each container opens that is not closed yet.
  std::vector<std::size_t> open_;
};

void SyntaxChecker::refuse(std::size_t offset, const std::string& reason) const {
  const TextPlace place = placeAt(text_, offset);
  throw ParseError(place.line, place.column, reason);
}

void SyntaxChecker::refuseNext(const std::string& reason) const {
  if (atEnd()) refuseEnd();
  const bool wellFormed = firstUtf8Step(text_.substr(position_)).wellFormed;
  refuse(position_, wellFormed ? reason : "invalid UTF-8");
}

void SyntaxChecker::refuseEnd() const {
  if (open_.empty()) refuse(position_, "no value in the text");
  refuse(open_.back(), text_[open_.back()] == '[' ? "unclosed array" : "unclosed object");
}

void SyntaxChecker::skipSpace() {
  while (!atEnd() && isSpace(text_[position_])) ++position_;
}

void SyntaxChecker::checkText() {
  do {
    skipSpace();
  } while (!passValueStart() || passValueEnd());
}

bool SyntaxChecker::passValueStart() {
  if (atEnd()) refuseEnd();
  const char first = text_[position_];
  if (first == '[' || first == '{') return passOpening();
  if (first == '"') {
    passString();
  } else if (first == '-' || isDigit(first)) {
    passNumber();
  } else if (isLetter(first)) {
    passLiteral();
  } else if (first == '+') {
    refuse(position_, "number with a plus sign");
  } else if (first == '.') {
    refuse(position_, "number without digits before its decimal point");
  } else {
    const Utf8Step step = firstUtf8Step(text_.substr(position_));
    refuseNext("expected a value, found " + describe(step.codePoint));
  }
  return true;
}

bool SyntaxChecker::passOpening() {
  const bool isArray = text_[position_] == '[';
  if (open_.size() == kDeepestNesting) refuse(position_, "nested deeper than 1000 levels");
  open_.push_back(position_++);
  skipSpace();
  if (nextIs(isArray ? ']' : '}')) {
    ++position_;
    open_.pop_back();
    return true;
  }
  if (!isArray) passMemberName();
  return false;
}

bool SyntaxChecker::passValueEnd() {
  for (;;) {
    skipSpace();
    if (open_.empty()) {
      if (!atEnd()) refuseNext("content after the end of the value");
      return false;
    }
    const bool isArray = text_[open_.back()] == '[';
    if (nextIs(',')) {
      ++position_;
      skipSpace();
      if (!isArray) passMemberName();
      return true;
    }
    if (!nextIs(isArray ? ']' : '}')) {
      refuseNext(isArray ? "expected a comma or the end of the array"
                         : "expected a comma or the end of the object");
    }
    ++position_;
    open_.pop_back();
  }
}

void SyntaxChecker::passMemberName() {
  if (!nextIs('"')) refuseNext("expected a member name in double quotes");
  passString();
  skipSpace();
  if (!nextIs(':')) refuseNext("expected a colon after the member name");
  ++position_;
}

void SyntaxChecker::passLiteral() {
  const std::string_view rest = text_.substr(position_);
  const auto end = std::find_if_not(rest.begin(), rest.end(), isLetter);
  const std::string_view word = rest.substr(0, static_cast<std::size_t>(end - rest.begin()));
  if (word != "true" && word != "false" && word != "null") {
    refuse(position_, "unknown literal, expected true, false or null");
  }
  position_ += word.size();
}

void SyntaxChecker::passNumber() {
  const std::string_view rest = text_.substr(position_);
  const NumberScan number = scanNumber(rest);
  if (number.fault != nullptr) refuse(position_, number.fault);
  if (isTooLarge(rest.substr(0, number.length))) {
    refuse(position_, "number too large for a double");
  }
  position_ += number.length;
}

void SyntaxChecker::passString() {
  const std::size_t start = position_++;
  while (!nextIs('"')) {
    if (atEnd()) refuse(start, "unclosed string");
    const char c = text_[position_];
    if (c == '\\') {
      passEscape(start);
    } else if (isControl(c)) {
      refuse(position_, "unescaped control character in a string");
    } else if (isAscii(c)) {
      ++position_;
    } else {
      const Utf8Step step = firstUtf8Step(text_.substr(position_));
      if (!step.wellFormed) refuse(position_, "invalid UTF-8");
      position_ += step.length;
    }
  }
  ++position_;
}

void SyntaxChecker::passEscape(std::size_t string) {
  constexpr std::string_view kSimpleEscapes = "\"\\/bfnrt";
  const std::size_t start = position_;
  if (start + 1 == text_.size()) refuse(string, "unclosed string");
  const char kind = text_[start + 1];
  if (kind != 'u') {
    if (kSimpleEscapes.find(kind) == std::string_view::npos) {
      refuse(start, "unknown escape in a string");
    }
    position_ += 2;
    return;
  }

  unsigned unit = 0;
  if (!readUnicodeEscape(unit)) {
    if (atEnd()) refuse(string, "unclosed string");
    refuse(start, "unicode escape without four hexadecimal digits");
  }
  const bool isHigh = unit >= 0xD800 && unit <= 0xDBFF;
  const bool isLow = unit >= 0xDC00 && unit <= 0xDFFF;
  unsigned next = 0;
  if (isLow || (isHigh && !(readUnicodeEscape(next) && next >= 0xDC00 && next <= 0xDFFF))) {
    refuse(start, "unpaired surrogate escape in a string");
  }
}

bool SyntaxChecker::readUnicodeEscape(unsigned& unit) {
  if (text_.substr(position_, 2) != "\\u") return false;
  position_ += 2;
  const std::size_t digits = position_;
  while (position_ < digits + 4) {
    if (atEnd() || !isHexadecimal(text_[position_])) return false;
    ++position_;
  }
  unit = static_cast<unsigned>(std::stoul(std::string(text_.substr(digits, 4)), nullptr, 16));
  return true;
}

}  // namespace

void checkSyntax(std::string_view utf8) {
  SyntaxChecker(utf8).checkText();
}

}  // namespace reference_host::json
