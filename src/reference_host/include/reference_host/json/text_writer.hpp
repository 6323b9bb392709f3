#pragma once

/// @file
/// Writing JSON text: the scalars, and a streaming writer for whole documents; and writing texts
/// for people, with JSON's escapes.
///
/// The JSON output is valid JSON in UTF-8 whatever goes in: in texts and member names each maximal
/// ill-formed part of UTF-8 becomes one U+FFFD, and numbers that are not finite become `null`.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

#include "foundation/export.hpp"
#include "foundation/json.hpp"

namespace reference_host::json {

/// Appends a text in double quotes. Only what JSON requires is escaped: the quote, the backslash
/// and the control characters below U+0020 (`\b`, `\t`, `\n`, `\f`, `\r`, else `\u00XX`).
TESSEL_HOST_API void appendText(std::string& out, std::string_view utf8);
/// The same for a text in UTF-16; each lone surrogate becomes one U+FFFD.
TESSEL_HOST_API void appendText(std::string& out, std::u16string_view utf16);

enum class Quotes { kNone, kAround };

/// Appends a text for people to read, with escapes for what would act on a terminal instead of
/// showing: control characters (U+0000 to U+001F, U+007F to U+009F), line separators (U+2028,
/// U+2029) and overrides of the direction (U+202A to U+202E, U+2066 to U+2069). The escapes are
/// JSON's. A byte that is no part of well-formed UTF-8 is written as `\xHH`.
/// @param quotes whether to put double quotes around it; the quote and the backslash are escaped
///   then, too.
TESSEL_HOST_API void appendVisible(std::string& out, std::string_view utf8,
                                   Quotes quotes = Quotes::kNone);

/// Appends the escape of a code point, in JSON's form: `\n`, `\u202e`, `\ud83f\udffe`.
TESSEL_HOST_API void appendEscape(std::string& out, char32_t codePoint);

/// Whether a text is empty, or nothing of it is to be seen.
TESSEL_HOST_API bool isBlank(std::string_view utf8);

/// Appends a JSON pointer (RFC 6901) for people to read, as `appendVisible` does. One with a
/// reference token of which nothing is to be seen is put in double quotes, and all characters of
/// that token but the space are escaped, so that an empty token and blank ones can be told apart.
TESSEL_HOST_API void appendVisiblePointer(std::string& out, std::string_view pointer);

/// Any bytes as well-formed UTF-8, from which they can be had back by putting a byte for each
/// `\xHH`. UTF-8 stays as it is, except that the backslash of such a sequence that is there already
/// is written as `\x5c`. Different bytes give different texts.
TESSEL_HOST_API std::string withBytesEscaped(std::string_view bytes);

/// Appends a number in the shortest form that reads back the same: `3`, `0.1`, `1e+300`, `-0`.
TESSEL_HOST_API void appendNumber(std::string& out, double number);
/// As for `double`, but the shortest form that reads back the same as a `float`.
TESSEL_HOST_API void appendNumber(std::string& out, float number);
/// Appends an integer with all its digits.
TESSEL_HOST_API void appendNumber(std::string& out, std::int64_t integer);
TESSEL_HOST_API void appendNumber(std::string& out, std::uint64_t integer);

/// Appends JSON text to a string, call by call.
///
///     std::string out;
///     JsonWriter writer(out, JsonWriter::Layout::kPretty);
///     writer.beginObject();
///     writer.key("name").value("first");
///     writer.key("columns").beginArray().value(1).value(2.5).null().endArray();
///     writer.endObject();
///
/// The writer puts commas, colons, line breaks and indentation. Every `begin...` needs its
/// `end...`, and in an object every value needs a `key` before it; the writer does not check this.
/// One writer may write any number of values one after another with what the caller puts between
/// them in the string; the string must outlive the writer. Only memory can run out.
class TESSEL_HOST_API JsonWriter {
 public:
  enum class Layout {
    kCompact,  ///< one line, no white space: `{"key":[1,2]}`
    kPretty,   ///< a line for each element, two spaces a level up to level 50, `"key": value`
  };

  explicit JsonWriter(std::string& out, Layout layout = Layout::kCompact) noexcept
      : out_(out), pretty_(layout == Layout::kPretty) {}

  JsonWriter& beginObject() { return begin('{'); }
  JsonWriter& endObject() { return end('}'); }
  JsonWriter& beginArray() { return begin('['); }
  JsonWriter& endArray() { return end(']'); }

  /// The name of the member whose value comes next.
  JsonWriter& key(std::string_view utf8);
  /// The same for a name that is a JSON text already.
  JsonWriter& quotedKey(std::string_view json);

  JsonWriter& value(std::string_view utf8);
  JsonWriter& value(std::u16string_view utf16);
  JsonWriter& value(const char16_t* utf16) { return value(std::u16string_view(utf16)); }
  JsonWriter& value(const char* utf8) { return value(std::string_view(utf8)); }
  JsonWriter& value(bool boolean) { return raw(boolean ? "true" : "false"); }
  JsonWriter& value(double number) { return this->number(number); }
  JsonWriter& value(float number) { return this->number(number); }
  /// Any other integer type.
  template <typename Integer, std::enable_if_t<std::is_integral_v<Integer>, int> = 0>
  JsonWriter& value(Integer integer) {
    using Widest = std::conditional_t<std::is_signed_v<Integer>, std::int64_t, std::uint64_t>;
    return number(static_cast<Widest>(integer));
  }
  JsonWriter& null() { return raw("null"); }

  /// A whole JSON value, nested to any depth; an Undefined value is written as `null`.
  JsonWriter& json(const foundation::json::Value& value);

  /// A text that is one whole JSON value already; it is put in unchanged.
  JsonWriter& raw(std::string_view json);

 private:
  JsonWriter& begin(char bracket);
  JsonWriter& end(char bracket);
  JsonWriter& endKey();
  template <typename Number>
  JsonWriter& number(Number number) {
    separate();
    appendNumber(out_, number);
    return *this;
  }
  /// Writes one of the alternatives that are no container.
  void scalar(const foundation::json::Value& value);
  /// Writes what belongs between the last thing written and the value or key to come.
  void separate();
  /// Goes to the next line where there are lines, in one append with the comma before it.
  void breakLine(bool comma);

  /// What was written last, inside the container that is open.
  enum class Last { kNothing, kKey, kValue };

  std::string& out_;
  bool pretty_;
  Last last_ = Last::kNothing;
  std::size_t level_ = 0;
};

}  // namespace reference_host::json
