#include "reference_host/json/text_writer.hpp"

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iterator>
#include <utility>
#include <vector>

#include "json/utf8.hpp"
#include "reference_host/json/pointer.hpp"

namespace reference_host::json {

namespace {

using foundation::json::Value;

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD
constexpr std::size_t kDeepestIndent = 50;

/// A comma and the longest start of a line behind it.
constexpr auto kCommaAndLine = [] {
  std::array<char, 2 + 2 * kDeepestIndent> text{',', '\n'};
  for (std::size_t index = 2; index != text.size(); ++index) text[index] = ' ';
  return text;
}();

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

constexpr std::string_view kHexadecimal = "0123456789abcdef";

void appendUnitEscape(std::string& out, char16_t unit) {
  switch (unit) {
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
      out += "\\u";
      for (const unsigned shift : {12U, 8U, 4U, 0U}) {
        out += kHexadecimal[(static_cast<unsigned>(unit) >> shift) & 0xFU];
      }
  }
}

void appendByteEscape(std::string& out, char byte) {
  const auto code = static_cast<unsigned char>(byte);
  out += "\\x";
  out += kHexadecimal[code >> 4U];
  out += kHexadecimal[code & 0xFU];
}

/// Which characters stand for themselves in every form of text.
constexpr auto kIsPlain = [] {
  std::array<bool, 0x80> plain{};
  for (std::size_t code = 0x20; code != 0x7F; ++code) plain[code] = code != '"' && code != '\\';
  return plain;
}();

bool isPlain(char16_t unit) {
  return unit < kIsPlain.size() && kIsPlain[unit];
}
bool isPlain(char character) {
  return isPlain(char16_t{static_cast<unsigned char>(character)});
}

/// Appends the plain characters at the start of a text and takes them off it. False when nothing is
/// left of it.
bool movePlain(std::string& out, std::string_view& text) {
  const auto end =
      std::find_if_not(text.begin(), text.end(), [](char character) { return isPlain(character); });
  const auto length = static_cast<std::size_t>(end - text.begin());
  out += text.substr(0, length);
  text.remove_prefix(length);
  return !text.empty();
}

/// Appends a text with the code points that are asked for, and the bytes that make none, as
/// escapes.
template <typename IsEscaped>
void appendShown(std::string& out, std::string_view utf8, IsEscaped isEscaped) {
  while (movePlain(out, utf8)) {
    const Utf8Step step = firstUtf8Step(utf8);
    const std::string_view character = utf8.substr(0, step.length);
    if (!step.wellFormed) {
      for (const char byte : character) appendByteEscape(out, byte);
    } else if (isEscaped(step.codePoint)) {
      appendEscape(out, static_cast<char32_t>(step.codePoint));
    } else {
      out += character;
    }
    utf8.remove_prefix(step.length);
  }
}

/// Control characters, line separators, and what changes the direction of the text behind it.
bool isUnsafeToShow(std::int32_t codePoint) {
  return codePoint < 0x20 || (codePoint >= 0x7F && codePoint <= 0x9F) ||
         (codePoint >= 0x2028 && codePoint <= 0x202E) ||
         (codePoint >= 0x2066 && codePoint <= 0x2069);
}

struct CodePointRange {
  std::int32_t first;
  std::int32_t last;
};

/// What is unsafe to show, and Unicode's White_Space and Default_Ignorable_Code_Point.
constexpr CodePointRange kInvisible[] = {
    {0x00, 0x20},      {0x7F, 0xA0},     {0xAD, 0xAD},     {0x34F, 0x34F},     {0x61C, 0x61C},
    {0x115F, 0x1160},  {0x1680, 0x1680}, {0x17B4, 0x17B5}, {0x180B, 0x180F},   {0x2000, 0x200F},
    {0x2028, 0x202F},  {0x205F, 0x206F}, {0x3000, 0x3000}, {0x3164, 0x3164},   {0xFE00, 0xFE0F},
    {0xFEFF, 0xFEFF},  {0xFFA0, 0xFFA0}, {0xFFF0, 0xFFF8}, {0x1BCA0, 0x1BCA3}, {0x1D173, 0x1D17A},
    {0xE0000, 0xE0FFF}};

bool showsNothing(std::int32_t codePoint) {
  return std::any_of(std::begin(kInvisible), std::end(kInvisible), [=](const auto& range) {
    return range.first <= codePoint && codePoint <= range.last;
  });
}

bool isHexadecimal(char character) {
  return (character >= '0' && character <= '9') || (character >= 'a' && character <= 'f') ||
         (character >= 'A' && character <= 'F');
}

/// Whether a text starts like the escape of a byte.
bool startsWithByteEscape(std::string_view text) {
  return text.size() >= 4 && text.substr(0, 2) == "\\x" && isHexadecimal(text[2]) &&
         isHexadecimal(text[3]);
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
  while (movePlain(out, utf8)) {
    const Utf8Step step = firstUtf8Step(utf8);
    if (!step.wellFormed) {
      out += kReplacement;
    } else if (step.codePoint >= 0x7F) {
      out += utf8.substr(0, step.length);
    } else {
      appendUnitEscape(out, static_cast<char16_t>(step.codePoint));
    }
    utf8.remove_prefix(step.length);
  }
  out += '"';
}

void appendText(std::string& out, std::u16string_view utf16) {
  // Converted on the stack, piece by piece.
  std::array<char, 512> piece;
  std::size_t length = 0;
  const auto movePiece = [&] { out.append(piece.data(), std::exchange(length, 0)); };
  piece[length++] = '"';
  for (std::size_t index = 0; index != utf16.size();) {
    if (piece.size() - length <= U8_MAX_LENGTH) movePiece();
    // First what is plain, as far as there is room for another character behind it.
    const std::size_t room = piece.size() - length - U8_MAX_LENGTH;
    const std::size_t end = index + std::min(utf16.size() - index, room);
    while (index != end && isPlain(utf16[index]))
      piece[length++] = static_cast<char>(utf16[index++]);
    if (index == end) continue;
    const char16_t unit = utf16[index];
    if (unit < 0x7F) {
      movePiece();
      appendUnitEscape(out, unit);
      ++index;
    } else {
      UChar32 codePoint = 0;
      U16_NEXT_OR_FFFD(utf16, index, utf16.size(), codePoint);
      U8_APPEND_UNSAFE(piece, length, codePoint);
    }
  }
  piece[length++] = '"';
  movePiece();
}

void appendEscape(std::string& out, char32_t codePoint) {
  if (codePoint > 0xFFFF) {
    appendUnitEscape(out, static_cast<char16_t>(U16_LEAD(codePoint)));
    appendUnitEscape(out, static_cast<char16_t>(U16_TRAIL(codePoint)));
  } else {
    appendUnitEscape(out, static_cast<char16_t>(codePoint));
  }
}

bool isBlank(std::string_view utf8) {
  while (!utf8.empty()) {
    const Utf8Step step = firstUtf8Step(utf8);
    if (!step.wellFormed || !showsNothing(step.codePoint)) return false;
    utf8.remove_prefix(step.length);
  }
  return true;
}

void appendVisible(std::string& out, std::string_view utf8, Quotes quotes) {
  const bool quoted = quotes == Quotes::kAround;
  if (quoted) out += '"';
  appendShown(out, utf8, [quoted](std::int32_t codePoint) {
    return isUnsafeToShow(codePoint) || (quoted && (codePoint == '"' || codePoint == '\\'));
  });
  if (quoted) out += '"';
}

void appendVisiblePointer(std::string& out, std::string_view pointer) {
  const std::vector<std::string_view> tokens = tokensOf(pointer);
  if (std::none_of(tokens.begin(), tokens.end(), isBlank)) {
    appendVisible(out, pointer);
    return;
  }
  out += '"';
  for (const std::string_view token : tokens) {
    const bool blank = isBlank(token);
    out += '/';
    appendShown(out, token, [blank](std::int32_t codePoint) {
      return blank ? codePoint != ' '
                   : isUnsafeToShow(codePoint) || codePoint == '"' || codePoint == '\\';
    });
  }
  out += '"';
}

std::string withBytesEscaped(std::string_view bytes) {
  std::string utf8;
  while (movePlain(utf8, bytes)) {
    const Utf8Step step = firstUtf8Step(bytes);
    const std::string_view character = bytes.substr(0, step.length);
    if (step.wellFormed && !startsWithByteEscape(bytes)) {
      utf8 += character;
    } else {
      for (const char byte : character) appendByteEscape(utf8, byte);
    }
    bytes.remove_prefix(step.length);
  }
  return utf8;
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
  return endKey();
}

JsonWriter& JsonWriter::quotedKey(std::string_view json) {
  separate();
  out_ += json;
  return endKey();
}

JsonWriter& JsonWriter::endKey() {
  out_ += ':';
  if (pretty_) out_ += ' ';
  last_ = Last::kKey;
  return *this;
}

JsonWriter& JsonWriter::value(std::string_view utf8) {
  separate();
  appendText(out_, utf8);
  return *this;
}

JsonWriter& JsonWriter::value(std::u16string_view utf16) {
  separate();
  appendText(out_, utf16);
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
  if (last_ != Last::kNothing) breakLine(false);
  out_ += bracket;
  last_ = Last::kValue;
  return *this;
}

void JsonWriter::separate() {
  // A value on the outermost level stands alone, whatever was written before it.
  if (level_ > 0 && last_ != Last::kKey) breakLine(last_ == Last::kValue);
  last_ = Last::kValue;
}

void JsonWriter::breakLine(bool comma) {
  const std::size_t line = pretty_ ? 1 + 2 * std::min(level_, kDeepestIndent) : 0;
  std::string_view text(kCommaAndLine.data(), 1 + line);
  if (!comma) text.remove_prefix(1);
  out_ += text;
}

}  // namespace reference_host::json
