#include "page/html_writer.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <string>

#include "reference_host/fl/utf16.hpp"
#include "reference_host/json/text_writer.hpp"

namespace tessel_tool {

namespace json = reference_host::json;

namespace {

using PlainBytes = std::array<bool, 0x100>;

constexpr PlainBytes plainBytes(bool isInAttribute) {
  PlainBytes plain{};
  for (std::size_t code = 0x20; code != 0x7F; ++code) {
    plain[code] = code != '<' && code != '&' && !(isInAttribute && code == '"');
  }
  return plain;
}

// What stands for itself.
constexpr PlainBytes kPlainInText = plainBytes(false);
constexpr PlainBytes kPlainInAttribute = plainBytes(true);

constexpr std::size_t kBlock = 8;

/// Whether as many characters as are in a block stand for themselves in texts: whether none of them
/// gets its highest bit by being what it must not be, or has it.
bool isPlainBlock(const char* characters) {
  constexpr std::uint64_t kEach = 0x0101010101010101U;
  std::uint64_t bytes = 0;
  std::memcpy(&bytes, characters, kBlock);
  const auto are = [&](char character) {
    return (bytes ^ (static_cast<unsigned char>(character) * kEach)) - kEach;
  };
  const std::uint64_t special =
      bytes | (bytes - 0x20 * kEach) | (bytes + kEach) | are('<') | are('&');
  return (special & (0x80 * kEach)) == 0;
}

bool isPlain(std::string_view utf8, const PlainBytes& plain) {
  if (&plain == &kPlainInText) {
    while (utf8.size() >= kBlock && isPlainBlock(utf8.data())) utf8.remove_prefix(kBlock);
  }
  return std::all_of(utf8.begin(), utf8.end(),
                     [&](char byte) { return plain[static_cast<unsigned char>(byte)]; });
}

bool isPlain(const PlainBytes& plain, char16_t unit) {
  return unit < plain.size() && plain[unit];
}

unsigned byteAt(std::string_view text, std::size_t index) {
  return index < text.size() ? static_cast<unsigned char>(text[index]) : 0U;
}

/// The noncharacter that a well-formed text begins with; 0 where it begins with another one.
char32_t firstNoncharacter(std::string_view utf8) {
  const unsigned lead = byteAt(utf8, 0);
  if (lead < 0xEFU) return 0;
  char32_t code = lead & (lead < 0xF0U ? 0xFU : 0x7U);
  for (std::size_t index = 1; index != (lead < 0xF0U ? 3U : 4U); ++index) {
    code = (code << 6U) | (byteAt(utf8, index) & 0x3FU);
  }
  const bool isOne = (code & 0xFFFEU) == 0xFFFEU || (code >= 0xFDD0U && code <= 0xFDEFU);
  return isOne ? code : 0;
}

void appendDigits(HtmlText& out, double number) {
  std::string digits;
  json::appendNumber(digits, number);
  out += digits;
}

}  // namespace

HtmlWriter& HtmlWriter::doctype() {
  out_ += "<!DOCTYPE html>\n";
  return *this;
}

HtmlWriter& HtmlWriter::attribute(std::string_view name, double number) {
  beginAttribute(name);
  appendDigits(out_, number);
  out_ += '"';
  return *this;
}

HtmlWriter& HtmlWriter::number(double number) {
  closeTag();
  appendDigits(out_, number);
  return *this;
}

HtmlWriter& HtmlWriter::number(std::uint64_t integer) {
  closeTag();
  constexpr std::size_t kLongest = 20;
  const std::size_t before = out_.size();
  char* const begin = out_.grow(kLongest);
  const char* const end = std::to_chars(begin, begin + kLongest, integer).ptr;
  out_.truncate(before + static_cast<std::size_t>(end - begin));
  return *this;
}

HtmlWriter& HtmlWriter::quoted(std::u16string_view utf16) {
  closeTag();
  if (std::all_of(utf16.begin(), utf16.end(), [](char16_t unit) {
        return isPlain(kPlainInAttribute, unit) && unit != u'\\';
      })) {
    out_ += '"';
    append(utf16, Inside::kText);
    out_ += '"';
    return *this;
  }
  std::string shown;
  json::appendVisible(shown, reference_host::i18n::ustringToUtf8(utf16), json::Quotes::kAround);
  appendShown(shown, Inside::kText);
  return *this;
}

HtmlWriter& HtmlWriter::lines(std::string_view utf8) {
  for (;;) {
    const std::size_t length = utf8.find('\n');
    text(utf8.substr(0, length));
    if (length == std::string_view::npos) return *this;
    lineEnd();
    utf8.remove_prefix(length + 1);
  }
}

HtmlWriter& HtmlWriter::lineEnd() {
  closeTag();
  out_ += '\n';
  return *this;
}

HtmlWriter& HtmlWriter::written(std::string_view html) {
  closeTag();
  out_ += html;
  return *this;
}

HtmlWriter& HtmlWriter::style(std::string_view css) {
  begin("style").closeTag();
  out_ += css;
  return end("style");
}

void HtmlWriter::append(std::string_view utf8, Inside inside) {
  const PlainBytes& plain = inside == Inside::kAttribute ? kPlainInAttribute : kPlainInText;
  if (isPlain(utf8, plain)) {
    out_ += utf8;
    return;
  }
  std::string shown;
  json::appendVisible(shown, utf8);
  appendShown(shown, inside);
}

void HtmlWriter::append(std::u16string_view utf16, Inside inside) {
  const PlainBytes& isPlainByte = inside == Inside::kAttribute ? kPlainInAttribute : kPlainInText;
  const std::size_t before = out_.size();
  char* const begin = out_.grow(utf16.size());
  char* end = begin;
  for (const char16_t unit : utf16) {
    if (!isPlain(isPlainByte, unit)) break;
    *end++ = static_cast<char>(unit);
  }
  const auto plain = static_cast<std::size_t>(end - begin);
  if (plain == utf16.size()) return;
  out_.truncate(before + plain);
  append(reference_host::i18n::ustringToUtf8(utf16.substr(plain)), inside);
}

/// Appends a text that is escaped already, but for what HTML alone takes amiss.
void HtmlWriter::appendShown(std::string_view utf8, Inside inside) {
  const auto isSpecial = [](char character) {
    return character == '<' || character == '&' || character == '"' ||
           static_cast<unsigned char>(character) >= 0xEFU;  // or a noncharacter's first byte
  };
  while (!utf8.empty()) {
    std::size_t plain = 0;
    while (plain != utf8.size() && !isSpecial(utf8[plain])) ++plain;
    out_ += utf8.substr(0, plain);
    utf8.remove_prefix(plain);
    if (utf8.empty()) return;
    std::size_t length = 1;
    if (const char32_t noncharacter = firstNoncharacter(utf8)) {
      std::string escape;
      json::appendEscape(escape, noncharacter);
      out_ += escape;
      length = noncharacter > 0xFFFFU ? 4 : 3;
    } else if (utf8.front() == '&') {
      out_ += "&amp;";
    } else if (utf8.front() == '<') {
      out_ += "&lt;";
    } else if (utf8.front() == '"' && inside == Inside::kAttribute) {
      out_ += "&quot;";
    } else {
      out_ += utf8.front();
    }
    utf8.remove_prefix(length);
  }
}

bool isShownAsIs(std::u16string_view text) {
  if (std::all_of(text.begin(), text.end(),
                  [](char16_t unit) { return unit >= 0x20 && unit < 0x7F; })) {
    return true;
  }
  const std::string utf8 = reference_host::i18n::ustringToUtf8(text);
  std::string shown;
  json::appendVisible(shown, utf8);
  if (shown != utf8) return false;
  for (std::size_t index = 0; index != utf8.size(); ++index) {
    if (firstNoncharacter(std::string_view(utf8).substr(index)) != 0) return false;
  }
  return true;
}

}  // namespace tessel_tool
