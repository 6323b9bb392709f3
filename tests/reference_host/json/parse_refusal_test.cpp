#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "reference_host/json/parse.hpp"
#include "reference_host/json/syntax_check.hpp"

namespace {

using reference_host::json::parse;
using reference_host::json::ParseError;
using reference_host::json::parseInPlace;
using namespace std::string_literals;

struct Row {
  const char* description;
  std::string text;
  std::size_t line;
  std::size_t column;
  std::string reason;
};

template <typename Parse>
void expectRefusal(const Row& row, const Parse& parseText) {
  try {
    parseText();
    ADD_FAILURE() << "it was accepted";
  } catch (const ParseError& error) {
    EXPECT_EQ(error.line(), row.line);
    EXPECT_EQ(error.column(), row.column);
    EXPECT_EQ(error.reason(), row.reason);
    EXPECT_EQ(error.what(), "line " + std::to_string(row.line) + ", column " +
                                std::to_string(row.column) + ": " + row.reason);
  }
}

void expectRefusals(const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    SCOPED_TRACE(row.description);
    expectRefusal(row, [&row] { parse(row.text); });
    expectRefusal(row, [&row] { parseInPlace(row.text); });
  }
}

constexpr const char* kNoValue = "no value in the text";
constexpr const char* kByteOrderMark = "a byte order mark (U+FEFF)";
constexpr const char* kAfterEnd = "content after the end of the value";
constexpr const char* kUnclosedArray = "unclosed array";
constexpr const char* kUnclosedObject = "unclosed object";
constexpr const char* kUnclosedString = "unclosed string";
constexpr const char* kArrayComma = "expected a comma or the end of the array";
constexpr const char* kObjectComma = "expected a comma or the end of the object";
constexpr const char* kName = "expected a member name in double quotes";
constexpr const char* kColon = "expected a colon after the member name";
constexpr const char* kLiteral = "unknown literal, expected true, false or null";
constexpr const char* kControl = "unescaped control character in a string";
constexpr const char* kEscape = "unknown escape in a string";
constexpr const char* kUnicodeEscape = "unicode escape without four hexadecimal digits";
constexpr const char* kSurrogate = "unpaired surrogate escape in a string";
constexpr const char* kUtf8 = "invalid UTF-8";
constexpr const char* kMinus = "minus sign without a number";
constexpr const char* kPlus = "number with a plus sign";
constexpr const char* kLeadingZero = "number with a leading zero";
constexpr const char* kNoInteger = "number without digits before its decimal point";
constexpr const char* kNoFraction = "number without digits after its decimal point";
constexpr const char* kNoExponent = "number without digits in its exponent";
constexpr const char* kTooLarge = "number too large for a double";
constexpr const char* kTooDeep = "nested deeper than 1000 levels";

std::string noValue(const std::string& found) {
  return "expected a value, found " + found;
}

TEST(ParseRefusalTest, TextsWithoutExactlyOneValue) {
  expectRefusals({
      {"no text", "", 1, 1, kNoValue},
      {"a space", " ", 1, 2, kNoValue},
      {"lines of space", " \n\t\r\n  ", 3, 3, kNoValue},
      {"a byte order mark alone", "\uFEFF", 1, 1, kNoValue},
      {"two byte order marks", "\uFEFF\uFEFF1", 1, 1, noValue(kByteOrderMark)},
      {"a part of a byte order mark", "\xEF\xBB{}", 1, 1, kUtf8},
      {"two numbers", "1 2", 1, 3, kAfterEnd},
      {"two numbers with a comma", "1,2", 1, 2, kAfterEnd},
      {"two arrays", "[][]", 1, 3, kAfterEnd},
      {"a literal after a number", "1 null", 1, 3, kAfterEnd},
      {"one bracket too many", "[1]]", 1, 4, kAfterEnd},
      {"a bracket after a scalar", "1]", 1, 2, kAfterEnd},
      {"a letter after a number", "1x", 1, 2, kAfterEnd},
      {"a digit after a literal", "true1", 1, 5, kAfterEnd},
      {"a comment after the value", "{} // end", 1, 4, kAfterEnd},
      {"a NUL after the value", "[]\0"s, 1, 3, kAfterEnd},
      {"a byte order mark after the value", "1\uFEFF", 1, 2, kAfterEnd},
      {"a closing bracket alone", "]", 1, 1, noValue("']'")},
      {"a closing brace alone", "}", 1, 1, noValue("'}'")},
      {"a comment alone", "/* x */", 1, 1, noValue("'/'")},
      {"a NUL alone", "\0"s, 1, 1, noValue("a NUL (U+0000)")},
      {"a no-break space",
       "\u00A0"
       "1",
       1, 1, noValue("U+00A0")},
      {"a byte order mark before an element", "[1,\uFEFF2]", 1, 4, noValue(kByteOrderMark)},
      {"a byte order mark as a member", "{\"a\":\uFEFF}", 1, 6, noValue(kByteOrderMark)},
      {"delete", "[\x7F]", 1, 2, noValue("U+007F")},
      {"the last that shows", "[~]", 1, 2, noValue("'~'")},
      {"beyond the plane", "[\U0001F600]", 1, 2, noValue("U+1F600")},
  });
}

TEST(ParseRefusalTest, Arrays) {
  expectRefusals({
      {"not closed, empty", "[", 1, 1, kUnclosedArray},
      {"not closed, after an element", "[1", 1, 1, kUnclosedArray},
      {"not closed, after a space", " [1 ", 1, 2, kUnclosedArray},
      {"the inner one not closed", "[1,\n [2", 2, 2, kUnclosedArray},
      {"many not closed", std::string(500, '['), 1, 500, kUnclosedArray},
      {"closed by a brace", "[1}", 1, 3, kArrayComma},
      {"empty, closed by a brace", "[}", 1, 2, noValue("'}'")},
      {"a comma after the last element", "[1,]", 1, 4, noValue("']'")},
      {"a comma before the first element", "[,1]", 1, 2, noValue("','")},
      {"a comma alone", "[,]", 1, 2, noValue("','")},
      {"no comma between numbers", "[1 2]", 1, 4, kArrayComma},
      {"no comma after a literal", "[true false]", 1, 7, kArrayComma},
      {"a text right after a number", R"([1"a"])", 1, 3, kArrayComma},
      {"a colon between elements", "[1:2]", 1, 3, kArrayComma},
      {"a form feed after an element", "[1\f]", 1, 3, kArrayComma},
      {"a form feed between elements", "[1,\f2]", 1, 4, noValue("U+000C")},
      {"a comment between elements", "[1, /* x */ 2]", 1, 5, noValue("'/'")},
      {"an invalid byte after an element", "[1\xFF]", 1, 3, kUtf8},
      {"an invalid byte as element", "[\xFF]", 1, 2, kUtf8},
  });
}

TEST(ParseRefusalTest, Objects) {
  expectRefusals({
      {"not closed, empty", "{", 1, 1, kUnclosedObject},
      {"not closed, after a name", R"({"a")", 1, 1, kUnclosedObject},
      {"not closed, after a member", R"({"a":1)", 1, 1, kUnclosedObject},
      {"not closed, after a comma", R"({"a":1,)", 1, 1, kUnclosedObject},
      {"the inner one not closed", "[{\"a\":\n{", 2, 1, kUnclosedObject},
      {"an array in it not closed", R"({"a":[)", 1, 6, kUnclosedArray},
      {"many not closed",
       [] {
         std::string text;
         for (int level = 0; level < 500; ++level) text += R"({"a":)";
         return text;
       }(),
       1, 2496, kUnclosedObject},
      {"closed by a bracket", R"({"a":1])", 1, 7, kObjectComma},
      {"empty, closed by a bracket", "{]", 1, 2, kName},
      {"a comma after the last member", R"({"a":1,})", 1, 8, kName},
      {"a comma alone", "{,}", 1, 2, kName},
      {"two commas", R"({"a":1,,"b":2})", 1, 8, kName},
      {"no comma between members", R"({"a":1 "b":2})", 1, 8, kObjectComma},
      {"a name without quotes", "{a:1}", 1, 2, kName},
      {"a name in single quotes", "{'a':1}", 1, 2, kName},
      {"a container as name", "{[]:1}", 1, 2, kName},
      {"an invalid byte as name", "{\xFF:1}", 1, 2, kUtf8},
      {"a name alone", R"({"a"})", 1, 5, kColon},
      {"a comma for a colon", R"({"a",1})", 1, 5, kColon},
      {"no colon", R"({"a" 1})", 1, 6, kColon},
      {"no value", R"({"a":})", 1, 6, noValue("'}'")},
      {"two colons", R"({"a"::1})", 1, 6, noValue("':'")},
  });
}

TEST(ParseRefusalTest, Literals) {
  expectRefusals({
      {"cut off", "nul", 1, 1, kLiteral},
      {"too long", "nulll", 1, 1, kLiteral},
      {"a capital letter", "True", 1, 1, kLiteral},
      {"all capitals", "[1, NULL]", 1, 5, kLiteral},
      {"not a number", "NaN", 1, 1, kLiteral},
      {"single quotes", "'a'", 1, 1, noValue("'''")},
      {"an underscore after it", "[null_]", 1, 6, kArrayComma},
      {"a letter beyond ASCII after it", "[true\u00E9]", 1, 6, kArrayComma},
  });
}

TEST(ParseRefusalTest, Numbers) {
  expectRefusals({
      {"a minus sign alone", "-", 1, 1, kMinus},
      {"a minus sign and a space", "- 1", 1, 1, kMinus},
      {"a minus sign before a point", "-.5", 1, 1, kMinus},
      {"a plus sign", "+1", 1, 1, kPlus},
      {"a leading zero", "01", 1, 1, kLeadingZero},
      {"a negative leading zero", "[-01]", 1, 2, kLeadingZero},
      {"a leading zero before a fraction", "[1, 00.5]", 1, 5, kLeadingZero},
      {"no integer part", ".5", 1, 1, kNoInteger},
      {"a point alone", "[.]", 1, 2, kNoInteger},
      {"no fraction", "1.", 1, 1, kNoFraction},
      {"no fraction before an exponent", "1.e5", 1, 1, kNoFraction},
      {"a second point", "1.2.3", 1, 4, kAfterEnd},
      {"no exponent digits", "1e", 1, 1, kNoExponent},
      {"an exponent sign alone", "[1e+]", 1, 2, kNoExponent},
      {"two exponent signs", "1e+-2", 1, 1, kNoExponent},
      {"a second exponent", "1e2e3", 1, 4, kAfterEnd},
      {"a minus sign inside", "[1-2]", 1, 3, kArrayComma},
      {"digits beyond ASCII", "[\uFF11]", 1, 2, noValue("U+FF11")},
      {"an exponent too large", "1e309", 1, 1, kTooLarge},
      {"a negative number too large", "[1,\n-1e400]", 2, 1, kTooLarge},
      {"the first double too large", "1.7976931348623159e308", 1, 1, kTooLarge},
      {"an exponent of many digits", "1e99999999999999999999999", 1, 1, kTooLarge},
      {"a long number and a text", R"([0.95000000000000000000"x"])", 1, 24, kArrayComma},
      {"a long number and a form feed", "[0.95000000000000000000\f]", 1, 24, kArrayComma},
      {"a long number with a leading zero", "[-00.9500000000000000000]", 1, 2, kLeadingZero},
      {"a long number without fraction", "[1234567890123456789012.]", 1, 2, kNoFraction},
      {"an integer of 310 digits", "[1" + std::string(309, '0') + "]", 1, 2, kTooLarge},
      {"an integer of 309 digits", std::string(309, '9'), 1, 1, kTooLarge},
  });
}

TEST(ParseRefusalTest, Strings) {
  expectRefusals({
      {"a quote alone", "\"", 1, 1, kUnclosedString},
      {"not closed", R"(["a)", 1, 2, kUnclosedString},
      {"not closed, ends with an escaped quote", R"("a\")", 1, 1, kUnclosedString},
      {"not closed, ends with a backslash", "[\n\"a\\", 2, 1, kUnclosedString},
      {"not closed, ends in a unicode escape", R"("\u00)", 1, 1, kUnclosedString},
      {"a name not closed", R"({"a:1})", 1, 2, kUnclosedString},
      {"a line feed", "\"a\nb\"", 1, 3, kControl},
      {"a tab", "[\"\t\"]", 1, 3, kControl},
      {"a NUL", "\"\0\""s, 1, 2, kControl},
      {"the last control character", "\"\x1F\"", 1, 2, kControl},
      {"a line feed in a text not closed", "[\"abc\n]", 1, 6, kControl},
      {"an unknown escape", R"("a\x")", 1, 3, kEscape},
      {"a capital unicode escape", R"("\U0041")", 1, 2, kEscape},
      {"an escaped line feed", "\"\\\n\"", 1, 2, kEscape},
      {"an escaped letter beyond ASCII", "\"\\\u00E9\"", 1, 2, kEscape},
      {"a unicode escape of three digits", R"("\u004")", 1, 2, kUnicodeEscape},
      {"a unicode escape with a sign", R"("\u+041")", 1, 2, kUnicodeEscape},
      {"a unicode escape in braces", R"("\u{41}")", 1, 2, kUnicodeEscape},
      {"a bad unicode escape in a name", R"({"\u12":1})", 1, 3, kUnicodeEscape},
      {"a high surrogate alone", R"("\ud800")", 1, 2, kSurrogate},
      {"the last high surrogate alone", R"("a\uDBFFb")", 1, 3, kSurrogate},
      {"a low surrogate alone", R"("\udc00")", 1, 2, kSurrogate},
      {"a high surrogate before another escape", R"("\ud800\n")", 1, 2, kSurrogate},
      {"a high surrogate before a pair", R"("\ud83d\ud83d\ude00")", 1, 2, kSurrogate},
      {"a low surrogate after a pair", R"("\ud83d\ude00\ude00")", 1, 14, kSurrogate},
      {"a high surrogate before a broken escape", R"("\ud800\u12")", 1, 2, kSurrogate},
      {"a lone surrogate in a name", R"({"\ud800":1})", 1, 3, kSurrogate},
      {"a high escape before an encoded low one", "\"\\ud83d\xED\xB8\x80\"", 1, 2, kSurrogate},
  });
}

TEST(ParseRefusalTest, InvalidUtf8) {
  expectRefusals({
      {"a stray continuation byte", "\"a\x80\"", 1, 3, kUtf8},
      {"a sequence cut off by the quote", "\"\xC3\"", 1, 2, kUtf8},
      {"a sequence cut off by text", "\"\xE2\x82z\"", 1, 2, kUtf8},
      {"a sequence cut off by the end", "[\"\xF0\x9F\x98", 1, 3, kUtf8},
      {"an overlong slash", "\"\xC0\xAF\"", 1, 2, kUtf8},
      {"an overlong form of three bytes", "\"\xE0\x80\xAF\"", 1, 2, kUtf8},
      {"an encoded surrogate", "\"\xED\xA0\x80\"", 1, 2, kUtf8},
      {"beyond the last code point", "\"\xF4\x90\x80\x80\"", 1, 2, kUtf8},
      {"a five-byte form", "\"\xF8\x88\x80\x80\x80\"", 1, 2, kUtf8},
      {"in a name", "{\"\xFF\":1}", 1, 3, kUtf8},
      {"Latin-1", "\"caf\xE9\"", 1, 5, kUtf8},
      {"UTF-16 with its byte order mark", "\xFF\xFE[\0]\0"s, 1, 1, kUtf8},
      {"UTF-16 without one", "[\0]\0"s, 1, 2, noValue("a NUL (U+0000)")},
      {"beside another fault that comes first", "[1,]\xFF", 1, 4, noValue("']'")},
      {"after the value", "1\xFF", 1, 2, kUtf8},
  });
}

std::string nestedText(std::size_t depth, std::string_view opening, char closing) {
  std::string text;
  for (std::size_t level = 0; level < depth; ++level) text += opening;
  return text + "0" + std::string(depth, closing);
}

TEST(ParseRefusalTest, Nesting) {
  expectRefusals({
      {"1,001 arrays", nestedText(1001, "[", ']'), 1, 1001, kTooDeep},
      {"1,001 arrays, the last empty", std::string(1001, '[') + std::string(1001, ']'), 1, 1001,
       kTooDeep},
      {"1,001 objects", nestedText(1001, R"({"a":)", '}'), 1, 5001, kTooDeep},
      {"an object in 1,000 arrays", std::string(1000, '[') + "{}" + std::string(1000, ']'), 1, 1001,
       kTooDeep},
      {"a second branch too deep", "[0,\n" + nestedText(1000, "[", ']') + "]", 2, 1000, kTooDeep},
      {"too deep and never closed", std::string(100'000, '['), 1, 1001, kTooDeep},
      {"objects too deep and never closed", nestedText(100'000, R"({"a":)", '"'), 1, 5001,
       kTooDeep},
      {"another fault that comes first", "[x," + nestedText(2000, "[", ']') + "]", 1, 2, kLiteral},
  });
}

TEST(ParseRefusalTest, CountsLinesAndCodePoints) {
  expectRefusals({
      {"after a line feed", "[\n  x]", 2, 3, kLiteral},
      {"a carriage return alone ends no line", "[\r x]", 1, 4, kLiteral},
      {"a tab is one column", "[\t\tx]", 1, 4, kLiteral},
      {"two bytes are one column", "[\"\u00E9\", x]", 1, 7, kLiteral},
      {"a combining mark is a column", "[\"e\u0301\", x]", 1, 8, kLiteral},
      {"escapes count as they are written", R"(["\u00e9", x])", 1, 12, kLiteral},
      {"a byte order mark does not count", "\uFEFF[x]", 1, 2, kLiteral},
      {"far down", std::string(1000, '\n') + "  x", 1001, 3, kLiteral},
      {"beyond several blocks", "[" + std::string(300, ' ') + "x]", 1, 302, kLiteral},
  });
}

}  // namespace
