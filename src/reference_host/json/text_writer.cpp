#include "reference_host/json/text_writer.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <vector>

#include "reference_host/json/utf8.hpp"

namespace reference_host::json {

namespace {

using foundation::json::Value;

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD
constexpr std::size_t kDeepestIndent = 50;

template <typename Number>
void appendDigits(std::string& out, Number number) {
  std::array<char, 32> digits;
  const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), number);
  out.append(digits.data(), result.ptr);
}

template <typename Number>
void appendFinite(std::string& out, Number number) {
  if (std::isfinite(number)) {
    appendDigits(out, number);
  } else {
    out += "null";
  }
}

void appendEscaped(std::string& out, char character) {
  switch (character) {
    case '"':
      out += "\\\"";
      return;
    case '\\':
      out += "\\\\";
      return;
    case '\b':
      out += "\\b";
      return;
    case '\t':
      out += "\\t";
      return;
    case '\n':
      out += "\\n";
      return;
    case '\f':
      out += "\\f";
      return;
    case '\r':
      out += "\\r";
      return;
    default:
      constexpr std::string_view kHexadecimal = "0123456789abcdef";
      const auto code = static_cast<unsigned char>(character);
      out += "\\u00";
      out += kHexadecimal[code >> 4U];
      out += kHexadecimal[code & 0xFU];
  }
}

bool isPlain(char character) {
  const auto code = static_cast<unsigned char>(character);
  return code >= 0x20 && code < 0x80 && character != '"' && character != '\\';
}

/// A container that is being written: exactly one of the two pointers is set.
struct OpenContainer {
  const Value::Array* elements = nullptr;
  const Value::Object* members = nullptr;
  Value::Array::const_iterator element{};
  Value::Object::const_iterator member{};
};

}  // namespace

void appendText(std::string& out, std::string_view utf8) {
  out += '"';
  while (!utf8.empty()) {
    const auto plainEnd = std::find_if_not(utf8.begin(), utf8.end(), isPlain);
    const auto plainLength = static_cast<std::size_t>(plainEnd - utf8.begin());
    out += utf8.substr(0, plainLength);
    utf8.remove_prefix(plainLength);
    if (utf8.empty()) break;
    std::size_t length = 1;
    if (static_cast<unsigned char>(utf8.front()) < 0x80) {
      appendEscaped(out, utf8.front());
    } else {
      const Utf8Step step = firstUtf8Step(utf8);
      length = step.length;
      out += step.wellFormed ? utf8.substr(0, length) : kReplacement;
    }
    utf8.remove_prefix(length);
  }
  out += '"';
}

void appendNumber(std::string& out, double number) {
  appendFinite(out, number);
}
void appendNumber(std::string& out, float number) {
  appendFinite(out, number);
}
void appendNumber(std::string& out, std::int64_t integer) {
  appendDigits(out, integer);
}
void appendNumber(std::string& out, std::uint64_t integer) {
  appendDigits(out, integer);
}

JsonWriter& JsonWriter::key(std::string_view utf8) {
  separate();
  appendText(out_, utf8);
  out_ += pretty_ ? ": " : ":";
  last_ = Last::kKey;
  return *this;
}

JsonWriter& JsonWriter::value(std::string_view utf8) {
  separate();
  appendText(out_, utf8);
  return *this;
}

JsonWriter& JsonWriter::raw(std::string_view json) {
  separate();
  out_ += json;
  return *this;
}

JsonWriter& JsonWriter::json(const Value& value) {
  std::vector<OpenContainer> open;
  const Value* next = &value;
  for (;;) {
    if (next != nullptr) {
      if (const auto* elements = next->get_if<Value::Array>()) {
        beginArray();
        open.push_back({elements, nullptr, elements->begin(), {}});
      } else if (const auto* members = next->get_if<Value::Object>()) {
        beginObject();
        open.push_back({nullptr, members, {}, members->begin()});
      } else {
        scalar(*next);
      }
    }
    if (open.empty()) return *this;

    next = nullptr;
    OpenContainer& innermost = open.back();
    if (innermost.elements != nullptr) {
      if (innermost.element != innermost.elements->end()) {
        next = &*innermost.element++;
        continue;
      }
      endArray();
    } else {
      if (innermost.member != innermost.members->end()) {
        key(innermost.member->first);
        next = &innermost.member++->second;
        continue;
      }
      endObject();
    }
    open.pop_back();
  }
}

void JsonWriter::scalar(const Value& value) {
  if (const auto* text = value.get_if<std::string>()) {
    this->value(std::string_view(*text));
  } else if (const auto* real = value.get_if<double>()) {
    this->value(*real);
  } else if (const auto* boolean = value.get_if<bool>()) {
    this->value(*boolean);
  } else if (const auto* single = value.get_if<float>()) {
    this->value(*single);
  } else if (const auto* integer = value.get_if<std::int64_t>()) {
    this->value(*integer);
  } else if (const auto* whole = value.get_if<std::uint64_t>()) {
    this->value(*whole);
  } else {
    null();
  }
}

JsonWriter& JsonWriter::begin(char bracket) {
  separate();
  out_ += bracket;
  last_ = Last::kNothing;
  ++level_;
  return *this;
}

JsonWriter& JsonWriter::end(char bracket) {
  --level_;
  if (last_ != Last::kNothing) breakLine();
  out_ += bracket;
  last_ = Last::kValue;
  return *this;
}

void JsonWriter::separate() {
  // A value on the outermost level stands alone, whatever was written before it.
  if (level_ > 0 && last_ != Last::kKey) {
    if (last_ == Last::kValue) out_ += ',';
    breakLine();
  }
  last_ = Last::kValue;
}

void JsonWriter::breakLine() {
  if (!pretty_) return;
  out_ += '\n';
  out_.append(2 * std::min(level_, kDeepestIndent), ' ');
}

}  // namespace reference_host::json
