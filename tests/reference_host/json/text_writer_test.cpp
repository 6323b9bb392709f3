#include "reference_host/json/text_writer.hpp"

#include <gtest/gtest.h>
#include <unicode/uchar.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <ios>
#include <limits>
#include <string>
#include <string_view>

#include "fl/i18n.hpp"
#include "foundation/json.hpp"
#include "reference_host/json/parse.hpp"

namespace {

using foundation::json::Null;
using foundation::json::pretty_print;
using foundation::json::Undefined;
using foundation::json::Value;
using reference_host::json::appendNumber;
using reference_host::json::appendText;
using reference_host::json::JsonWriter;
using Array = Value::Array;
using Object = Value::Object;
using namespace std::string_view_literals;

struct TextRow {
  const char* description;
  std::string_view text;
  std::string_view written;
};

/// Expects each row to be written behind what is there.
template <typename Rows, typename Append>
void expectWritten(const Rows& rows, const Append& append) {
  for (const TextRow& row : rows) {
    SCOPED_TRACE(row.description);
    std::string out = "before ";
    append(out, row.text);
    EXPECT_EQ(out, "before " + std::string(row.written));
  }
}

constexpr TextRow kTextRows[] = {
    {"no characters", ""sv, R"("")"sv},
    {"a quote, and a backslash at the end", "a\"b\\"sv, R"("a\"b\\")"sv},
    {"controls", "\b\t\n\f\r\0\x01\x0B\x1F"sv, R"("\b\t\n\f\r\u0000\u0001\u000b\u001f")"sv},
    {"what passes", "a/ \x7F\u00E9\u2028\u2029\u20AC\U0001F600"sv,
     "\"a/ \x7F\u00E9\u2028\u2029\u20AC\U0001F600\""sv},
    {"a stray byte, and characters cut off by text, a quote and the end",
     "a\x80z\xE2\x82z\xE2\"\xF0\x9F\x98"sv, "\"a\uFFFDz\uFFFDz\uFFFD\\\"\uFFFD\""sv},
    {"an encoded surrogate is three parts, an overlong slash two", "\xED\xA0\x80 \xC0\xAF"sv,
     "\"\uFFFD\uFFFD\uFFFD \uFFFD\uFFFD\""sv},
    {"beyond the last code point, and bytes that start nothing", "\xF4\x90\x80\x80 \xFE\xFF"sv,
     "\"\uFFFD\uFFFD\uFFFD\uFFFD \uFFFD\uFFFD\""sv},
};

TEST(AppendTextTest, WritesValidJson) {
  expectWritten(kTextRows, [](std::string& out, std::string_view text) { appendText(out, text); });
  expectWritten(kTextRows, [](std::string& out, std::string_view text) {
    appendText(out, fl::i18n::utf8_to_ustring(std::string(text)));
  });
  expectWritten(kTextRows, [](std::string& out, std::string_view text) {
    JsonWriter(out).key(text);
    out.pop_back();
  });
  std::string out;
  appendText(out, std::u16string{u'a', 0xDC00, u'b', 0xD800, 0xD83D, 0xDE00, 0xD800});
  EXPECT_EQ(out, "\"a\uFFFDb\uFFFD\U0001F600\uFFFD\"") << "for lone surrogates";
}

TEST(AppendTextTest, ALongTextIsNeverCut) {
  for (std::size_t length = 0; length < 1100; ++length) {
    const std::string utf8 = std::string(length, 'x') + "\u00E9\U0001F600\n\u20AC";
    std::string expected;
    appendText(expected, utf8);
    std::string out;
    appendText(out, fl::i18n::utf8_to_ustring(utf8));
    ASSERT_EQ(out, expected);
  }
}

constexpr TextRow kVisibleRows[] = {
    {"no characters", ""sv, ""sv},
    {"controls", "\b\t\n\f\r\0\x1B[2J\x1F"sv, R"(\b\t\n\f\r\u0000\u001b[2J\u001f)"sv},
    {"delete and what is behind it", "\x7F\u0080\u0085\u009F"sv, R"(\u007f\u0080\u0085\u009f)"sv},
    {"separators, overrides and isolates", "\u2028\u2029\u202A\u202E\u2066\u2069"sv,
     R"(\u2028\u2029\u202a\u202e\u2066\u2069)"sv},
    {"what is beside those passes, as do quotes, backslashes, letters and joiners",
     " ~\u00A0\u2027\u202F\u2065\u206A\"\\n\u00E9\u200C\u200D\U0001F600"sv,
     " ~\u00A0\u2027\u202F\u2065\u206A\"\\n\u00E9\u200C\u200D\U0001F600"sv},
    {"bytes that are no UTF-8", "a\x9Bz\xE2\x80"sv, R"(a\x9bz\xe2\x80)"sv},
};

TEST(AppendVisibleTest, EscapesWhatWouldNotShow) {
  using reference_host::json::appendVisible;
  expectWritten(kVisibleRows,
                [](std::string& out, std::string_view text) { appendVisible(out, text); });
  std::string quoted;
  appendVisible(quoted, "\"a\\\u202E\n", reference_host::json::Quotes::kAround);
  EXPECT_EQ(quoted, R"("\"a\\\u202e\n")");
}

constexpr TextRow kPointerRows[] = {
    {"the whole document", ""sv, ""sv},
    {"tokens that show", "/a/0/b c/a\nb/a\u200Db/\"\\/\xFF"sv,
     "/a/0/b c/a\\nb/a\u200Db/\"\\/\\xff"sv},
    {"a line separator", "/a\n/\u2028"sv, R"("/a\n/\u2028")"sv},
    {"an empty token", "/"sv, R"("/")"sv},
    {"one among others", "/a//b"sv, R"("/a//b")"sv},
    {"spaces", "/  /a"sv, R"("/  /a")"sv},
    {"a no-break space", "/\u00A0"sv, R"("/\u00a0")"sv},
    {"a space of no width", "/\u200B"sv, R"("/\u200b")"sv},
    {"a joiner", "/\u200D"sv, R"("/\u200d")"sv},
    {"an invisible one beyond the plane", "/\U000E0020"sv, R"("/\udb40\udc20")"sv},
    {"quotes beside a blank token", R"(/"\/)"sv, R"("/\"\\/")"sv},
};

TEST(AppendVisibleTest, PointersWithBlankTokensAreQuoted) {
  expectWritten(kPointerRows, reference_host::json::appendVisiblePointer);
}

TEST(AppendVisibleTest, EveryCodePointThatShowsNothingMakesABlankToken) {
  for (UChar32 codePoint = 0x80; codePoint <= UCHAR_MAX_VALUE; ++codePoint) {
    if (U_IS_SURROGATE(codePoint)) continue;
    std::string pointer = "/";
    std::array<char, U8_MAX_LENGTH> utf8;
    std::size_t length = 0;
    U8_APPEND_UNSAFE(utf8, length, codePoint);
    pointer.append(utf8.data(), length);
    std::string out;
    reference_host::json::appendVisiblePointer(out, pointer);
    const bool showsNothing =
        u_charType(codePoint) == U_CONTROL_CHAR ||
        u_hasBinaryProperty(codePoint, UCHAR_WHITE_SPACE) != 0 ||
        u_hasBinaryProperty(codePoint, UCHAR_DEFAULT_IGNORABLE_CODE_POINT) != 0;
    ASSERT_EQ(out.front() == '"', showsNothing) << std::hex << codePoint;
  }
}

constexpr TextRow kByteRows[] = {
    {"UTF-8 and backslashes", "a/\u00E9\U0001F600\n\\b\\\\x\\x1\\xg0\\x1g"sv,
     "a/\u00E9\U0001F600\n\\b\\\\x\\x1\\xg0\\x1g"sv},
    {"bytes", "a\xFFz\xE2\x82"sv, R"(a\xffz\xe2\x82)"sv},
    {"escapes of bytes", R"(a\xffz\xFF\x5c)"sv, R"(a\x5cxffz\x5cxFF\x5cx5c)"sv},
    {"a backslash before such an escape", R"(\\xff)"sv, R"(\\x5cxff)"sv},
    {"a backslash before a byte", "\\\xFF"sv, R"(\\xff)"sv},
    {"the start of an escape before a byte", "\\x5\xFF"sv, R"(\x5\xff)"sv},
};

TEST(WithBytesEscapedTest, IsUtf8OfDifferentBytesDifferent) {
  expectWritten(kByteRows, [](std::string& out, std::string_view bytes) {
    out += reference_host::json::withBytesEscaped(bytes);
  });
}

/// Numbers, with a space behind each.
template <typename Number>
std::string written(std::initializer_list<Number> numbers) {
  std::string out;
  for (const Number number : numbers) {
    appendNumber(out, number);
    out += ' ';
  }
  return out;
}

TEST(AppendNumberTest, WritesTheShortestFormAndAllDigitsOfAnInteger) {
  using Double = std::numeric_limits<double>;
  EXPECT_EQ(written({0.0, -0.0, 3.0, -1.5, 0.1, 0.1 + 0.2, 1.0 / 3.0, 65535.0, 2147483647.5}),
            "0 -0 3 -1.5 0.1 0.30000000000000004 0.3333333333333333 65535 2147483647.5 ");
  EXPECT_EQ(written({9007199254740993.0, 18446744073709551615.0, 1e21, 1e-7}),
            "9007199254740992 18446744073709551616 1e+21 1e-07 ");
  EXPECT_EQ(written({Double::max(), Double::lowest(), Double::min(), Double::denorm_min()}),
            "1.7976931348623157e+308 -1.7976931348623157e+308 2.2250738585072014e-308 5e-324 ");
  EXPECT_EQ(written({Double::infinity(), -Double::infinity(), Double::quiet_NaN()}),
            "null null null ");
  using Float = std::numeric_limits<float>;
  EXPECT_EQ(written({0.1F, -0.0F, 3.0F, 16777216.0F, 1e10F, Float::max(), 1e-45F}),
            "0.1 -0 3 16777216 1e+10 3.4028235e+38 1e-45 ");
  EXPECT_EQ(written({Float::infinity(), Float::quiet_NaN()}), "null null ");
  using Integer = std::numeric_limits<std::int64_t>;
  EXPECT_EQ(written({Integer::min(), Integer::max(), std::int64_t{0}}),
            "-9223372036854775808 9223372036854775807 0 ");
  EXPECT_EQ(written({std::numeric_limits<std::uint64_t>::max()}), "18446744073709551615 ");
}

TEST(JsonWriterTest, WritesOneCompactLine) {
  std::string out;
  JsonWriter writer(out);
  const std::string text = "a \"text\"";
  writer.beginObject();
  writer.key("text").value(text).key("literal").value("x").key("view").value("y"sv);
  writer.quotedKey(R"("\"")").value(u"z");
  writer.key("numbers").beginArray();
  writer.value(1.5).value(0.1F).value(-7).value(8U).value(std::size_t{9});
  writer.value(std::int64_t{-10}).value(std::uint64_t{11});
  writer.endArray();
  writer.key("words").beginArray().value(true).value(false).null().endArray();
  writer.key("empty").beginArray().beginArray().endArray().beginObject().endObject().endArray();
  writer.key("tree").json(Object{{"a", Array{1.0}}, {"b", Object{}}});
  writer.key("raw").raw("[1,2]");
  writer.endObject();
  EXPECT_EQ(out, R"({"text":"a \"text\"","literal":"x","view":"y","\"":"z",)"
                 R"("numbers":[1.5,0.1,-7,8,9,-10,11],"words":[true,false,null],)"
                 R"("empty":[[],{}],"tree":{"a":[1],"b":{}},"raw":[1,2]})");
}

TEST(JsonWriterTest, WritesOneValueAfterAnother) {
  std::string out;
  JsonWriter writer(out);
  writer.beginObject().key("a").value(1).endObject();
  out += '\n';
  writer.beginArray().endArray();
  out += '\n';
  writer.value("text");
  EXPECT_EQ(out, "{\"a\":1}\n[]\n\"text\"");
}

TEST(PrettyPrintTest, WritesEveryAlternative) {
  using Integer = std::numeric_limits<std::int64_t>;
  using Whole = std::numeric_limits<std::uint64_t>;
  const struct {
    const char* description;
    Value value;
    const char* json;
  } rows[] = {
      {"scalars",
       Array{Undefined(), Null(), true, false, 2.5, "x\n", 0.1F, Integer::min(), Whole::max()},
       "[\n  null,\n  null,\n  true,\n  false,\n  2.5,\n  \"x\\n\",\n  0.1,\n"
       "  -9223372036854775808,\n  18446744073709551615\n]"},
      {"a scalar alone", "x", "\"x\""},
      {"members in byte order", Object{{"b", 1.0}, {"", 2.0}, {"\u00E9", 3.0}, {"B", 4.0}},
       "{\n  \"\": 2,\n  \"B\": 4,\n  \"b\": 1,\n  \"\u00E9\": 3\n}"},
      {"nesting", Object{{"a", Array{Object{{"b", Array{}}}, Object{}}}},
       "{\n  \"a\": [\n    {\n      \"b\": []\n    },\n    {}\n  ]\n}"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.description);
    EXPECT_EQ(pretty_print(row.value), row.json);
  }
}

TEST(PrettyPrintTest, TheIndentStopsGrowingAtLevelFifty) {
  constexpr std::size_t kDepth = 60;
  const auto line = [](std::size_t level) {
    return '\n' + std::string(2 * std::min<std::size_t>(level, 50), ' ');
  };
  std::string expected = "[]";
  for (std::size_t level = kDepth - 1; level-- > 0;) {
    expected = '[' + line(level + 1) + expected + line(level) + ']';
  }
  const std::string text = std::string(kDepth, '[') + std::string(kDepth, ']');
  EXPECT_EQ(pretty_print(reference_host::json::parse(text)), expected);
}

}  // namespace
