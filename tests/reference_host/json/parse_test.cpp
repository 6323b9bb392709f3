#include "reference_host/json/parse.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/json.hpp"
#include "reference_host/json/syntax_check.hpp"
#include "reference_host/json/text_writer.hpp"

namespace {

using foundation::json::Null;
using foundation::json::Value;
using reference_host::json::checkSyntax;
using reference_host::json::parse;
using reference_host::json::ParseError;
using reference_host::json::parseInPlace;
using reference_host::json::ParseReport;
using Array = Value::Array;
using Object = Value::Object;
using namespace std::string_literals;

struct Accepted {
  const char* description;
  std::string text;
  Value value;
  std::size_t duplicates = 0;
};

void expectValues(const std::vector<Accepted>& rows) {
  for (const Accepted& row : rows) {
    SCOPED_TRACE(row.description);
    EXPECT_NO_THROW(checkSyntax(row.text));
    for (const char* const mark : {"", "\uFEFF"}) {
      std::string text = mark + row.text;
      ParseReport report{99, "left over"};
      const auto expectValue = [&](const Value& value) {
        EXPECT_EQ(value, row.value);
        EXPECT_EQ(report.duplicateMembers, row.duplicates);
        EXPECT_EQ(report.text, row.text);
        report = {99, "left over"};
      };
      expectValue(parse(text, report));
      expectValue(parseInPlace(text, report));
    }
  }
}

TEST(ParseTest, Structure) {
  expectValues({
      {"a number alone", "42", 42.0},
      {"an empty text alone", R"("")", ""},
      {"every kind of space around a value", " \t\r\n null \t\r\n ", Null()},
      {"every kind of element", R"([null,true,false,-1.5,"x",[],{}])",
       Array{Null(), true, false, -1.5, "x", Array{}, Object{}}},
      {"space in empty containers", "[[ \t\r\n ],{ \t\r\n }]", Array{Array{}, Object{}}},
      {"space around commas and colons", "{ \"a\" : [ 1 , 2 ,\n3 ] , \"b\"\t:\t2 }",
       Object{{"a", Array{1.0, 2.0, 3.0}}, {"b", 2.0}}},
      {"values after inner containers", R"({"a":[{"b":1},2],"c":3})",
       Object{{"a", Array{Object{{"b", 1.0}}, 2.0}}, {"c", 3.0}}},
      {"an empty member name", R"({"":0})", Object{{"", 0.0}}},
      {"an escaped member name", R"({"\u0061\n":0})", Object{{"a\n", 0.0}}},
      {"member names in no order", R"({"b":1,"a":2,"B":3,"c":4})",
       Object{{"B", 3.0}, {"a", 2.0}, {"b", 1.0}, {"c", 4.0}}},
      {"brackets in texts", R"(["]","}",",",":"])", Array{"]", "}", ",", ":"}},
  });
}

TEST(ParseTest, OfTwoMembersTheLastHolds) {
  expectValues({
      {"a scalar replaces a scalar", R"({"a":1,"a":2})", Object{{"a", 2.0}}, 1},
      {"a container replaces a scalar", R"({"a":1,"b":0,"a":[2]})",
       Object{{"a", Array{2.0}}, {"b", 0.0}}, 1},
      {"a scalar replaces a container with such members", R"({"a":{"b":1,"b":2},"a":null})",
       Object{{"a", Null()}}, 2},
      {"an array replaces an array", R"({"a":[1,2],"a":[3]})", Object{{"a", Array{3.0}}}, 1},
      {"an object replaces an object", R"({"a":{"b":1},"a":{"c":2}})",
       Object{{"a", Object{{"c", 2.0}}}}, 1},
      {"names that are one after unescaping", R"({"a":1,"\u0061":2})", Object{{"a", 2.0}}, 1},
      {"names that differ in case", R"({"a":1,"A":2})", Object{{"A", 2.0}, {"a", 1.0}}, 0},
  });
}

TEST(ParseTest, Texts) {
  expectValues({
      {"all short escapes", R"("\"\\\/\b\f\n\r\t")", "\"\\/\b\f\n\r\t"},
      {"hexadecimal digits of both cases", R"("\u00e9\u00E9\uaBcD")", "\u00E9\u00E9\uABCD"},
      {"an escaped NUL", R"("a\u0000b")", "a\0b"s},
      {"around the surrogates", R"("\ud7ff\ue000\uffff")", "\uD7FF\uE000\uFFFF"},
      {"the first and the last pair", R"("\ud800\udc00\uDBFF\uDFFF")", "\U00010000\U0010FFFF"},
      {"a pair between letters", R"("a\ud83d\ude00b")", "a\U0001F600b"},
      {"an escaped backslash before u", R"("\\u0041")", "\\u0041"},
      {"a slash and a delete as they are", "\"/\x7F\"", "/\x7F"},
      {"two, three and four bytes", "\"\u00E9\u2028\uFEFF\U0010FFFF\"",
       "\u00E9\u2028\uFEFF\U0010FFFF"},
      {"a long text", "\"" + std::string(100'000, 'x') + "\"", std::string(100'000, 'x')},
      {"quotes escaped across block borders", "\"" + std::string(62, 'x') + R"(\\\"\\")",
       std::string(62, 'x') + R"(\"\)"},
  });
}

TEST(ParseTest, Numbers) {
  using Limits = std::numeric_limits<double>;
  expectValues({
      {"every form of an exponent", "[1E2,1e+2,1e002]", Array{100.0, 100.0, 100.0}},
      {"the largest uint64", "18446744073709551615", 18446744073709551616.0},
      {"an integer of 309 digits", "1" + std::string(308, '0'), 1e308},
      {"more digits than any limit", "0." + std::string(5000, '3'), 1.0 / 3.0},
      {"an integer part longer than the exponent range allows", std::string(400, '9') + "e-400",
       1.0},
      {"a fraction longer than the exponent range allows", "0." + std::string(399, '0') + "1e400",
       1.0},
      {"twenty digits too large for an integer", "0.38461826976937733988", 0.38461826976937733988},
      {"a long number with space after it", "[0.95000000000000000000 \t\r\n]", Array{0.95}},
      {"a short number with much space after it", "[7" + std::string(100, ' ') + "]", Array{7.0}},
      {"the largest double", "1.7976931348623157e308", Limits::max()},
      {"just below the first that is too large", "1.7976931348623158e308", Limits::max()},
      {"the smallest normal double", "2.2250738585072014e-308", Limits::min()},
      {"the smallest double, and what is rounded up to it", "[5e-324,3e-324]",
       Array{Limits::denorm_min(), Limits::denorm_min()}},
      {"exponents of many digits", "[1e-99999999999999999999999,0e99999999999999999999999]",
       Array{0.0, 0.0}},
      {"halfway, to even", "[9007199254740993,9007199254740993.0]",
       Array{9007199254740992.0, 9007199254740992.0}},
      {"a digit above halfway", "9007199254740993.00000000000000000000000000000000000001",
       9007199254740994.0},
  });
}

std::string repeated(std::string_view text, std::size_t times) {
  std::string all;
  for (std::size_t time = 0; time < times; ++time) all += text;
  return all;
}

TEST(ParseTest, AcceptsAThousandLevels) {
  const std::string text = repeated(R"([{"a":)", 500) + "0" + repeated("}]", 500);
  std::string written;
  reference_host::json::JsonWriter(written).json(parse(text));
  EXPECT_EQ(written, text);
  EXPECT_NO_THROW(checkSyntax(text));
}

TEST(ParseTest, ReadsTheGivenTextOnly) {
  EXPECT_EQ(parse(std::string_view("[1]]]]", 3)), Value(Array{1.0}));
  EXPECT_EQ(parse(std::string_view("123", 2)), Value(12.0));
  EXPECT_EQ(parseInPlace("12"), Value(12.0));
  EXPECT_EQ(parse(std::string_view("truely", 4)), Value(true));
  // A buffer of exactly the text's size, so that a memory checker sees a read beyond it.
  const std::string text = R"(["text",12345])";
  const auto buffer = std::make_unique<char[]>(text.size());
  text.copy(buffer.get(), text.size());
  EXPECT_EQ(parse(std::string_view(buffer.get(), text.size())), Value(Array{"text", 12345.0}));
}

struct Refused {
  const char* description;
  std::string text;
  std::size_t line;
  std::size_t column;
  std::string reason;
};

void expectRefusals(const std::vector<Refused>& rows) {
  for (const Refused& row : rows) {
    SCOPED_TRACE(row.description);
    const auto refusal = [&row](auto parseText) {
      try {
        parseText(row.text);
        ADD_FAILURE() << "it was accepted";
      } catch (const ParseError& error) {
        EXPECT_EQ(error.line(), row.line);
        EXPECT_EQ(error.column(), row.column);
        EXPECT_EQ(error.reason(), row.reason);
        EXPECT_EQ(error.what(), "line " + std::to_string(row.line) + ", column " +
                                    std::to_string(row.column) + ": " + row.reason);
      }
    };
    refusal([](const std::string& text) { parse(text); });
    refusal([](const std::string& text) { parseInPlace(text); });
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
constexpr const char* kLiteral = "unknown literal, expected true, false or null";
constexpr const char* kControl = "unescaped control character in a string";
constexpr const char* kUnicodeEscape = "unicode escape without four hexadecimal digits";
constexpr const char* kSurrogate = "unpaired surrogate escape in a string";
constexpr const char* kUtf8 = "invalid UTF-8";
constexpr const char* kLeadingZero = "number with a leading zero";
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
      {"lines of space", " \n\t\r\n  ", 3, 3, kNoValue},
      {"a byte order mark alone", "\uFEFF", 1, 1, kNoValue},
      {"two byte order marks", "\uFEFF\uFEFF1", 1, 1, noValue(kByteOrderMark)},
      {"a part of a byte order mark", "\xEF\xBB{}", 1, 1, kUtf8},
      {"two numbers with a comma", "1,2", 1, 2, kAfterEnd},
      {"a byte order mark does not count", "\uFEFF[x]", 1, 2, kLiteral},
      {"beyond several blocks", "[" + std::string(300, ' ') + "x]", 1, 302, kLiteral},
      {"escapes count as they are written", R"(["\u00e9", x])", 1, 12, kLiteral},
      {"a bracket after a scalar", "1]", 1, 2, kAfterEnd},
      {"a digit after a literal", "true1", 1, 5, kAfterEnd},
      {"a NUL after the value", "[]\0"s, 1, 3, kAfterEnd},
      {"a closing bracket alone", "]", 1, 1, noValue("']'")},
      {"a NUL alone", "\0"s, 1, 1, noValue("a NUL (U+0000)")},
      {"a no-break space", "[\u00A0]", 1, 2, noValue("U+00A0")},
      {"a byte order mark as a member", "{\"a\":\uFEFF}", 1, 6, noValue(kByteOrderMark)},
      {"delete", "[\x7F]", 1, 2, noValue("U+007F")},
      {"the last that shows", "[~]", 1, 2, noValue("'~'")},
      {"beyond the plane", "[\U0001F600]", 1, 2, noValue("U+1F600")},
  });
}

TEST(ParseRefusalTest, ArraysAndObjects) {
  expectRefusals({
      {"an array not closed, after a space", " [1 ", 1, 2, kUnclosedArray},
      {"an array closed by a brace", "[1}", 1, 3, kArrayComma},
      {"a comma after the last element", "[1,]", 1, 4, noValue("']'")},
      {"a comma before the first element", "[,1]", 1, 2, noValue("','")},
      {"no comma after a literal", "[true false]", 1, 7, kArrayComma},
      {"a text right after a number", R"([1"a"])", 1, 3, kArrayComma},
      {"a form feed between elements", "[1,\f2]", 1, 4, noValue("U+000C")},
      {"an invalid byte after an element", "[1\xFF]", 1, 3, kUtf8},
      {"an object not closed, after a name", R"({"a")", 1, 1, kUnclosedObject},
      {"an object not closed, after a member", R"({"a":1)", 1, 1, kUnclosedObject},
      {"an object not closed, after a comma", R"({"a":1,)", 1, 1, kUnclosedObject},
      {"an array in it not closed", R"({"a":[)", 1, 6, kUnclosedArray},
      {"an object closed by a bracket", R"({"a":1])", 1, 7, kObjectComma},
      {"a comma after the last member", R"({"a":1,})", 1, 8, kName},
      {"a name without quotes", "{a:1}", 1, 2, kName},
      {"an invalid byte as name", "{\xFF:1}", 1, 2, kUtf8},
      {"a name alone", R"({"a"})", 1, 5, "expected a colon after the member name"},
      {"no value", R"({"a":})", 1, 6, noValue("'}'")},
  });
}

TEST(ParseRefusalTest, LiteralsAndNumbers) {
  expectRefusals({
      {"a literal cut off", "nul", 1, 1, kLiteral},
      {"a literal too long", "nulll", 1, 1, kLiteral},
      {"single quotes", "'a'", 1, 1, noValue("'''")},
      {"an underscore after a literal", "[null_]", 1, 6, kArrayComma},
      {"a minus sign alone", "-", 1, 1, "minus sign without a number"},
      {"a plus sign", "+1", 1, 1, "number with a plus sign"},
      {"a leading zero", "01", 1, 1, kLeadingZero},
      {"no integer part", ".5", 1, 1, "number without digits before its decimal point"},
      {"no fraction", "1.", 1, 1, kNoFraction},
      {"no exponent digits", "1e", 1, 1, kNoExponent},
      {"a minus sign inside", "[1-2]", 1, 3, kArrayComma},
      {"an exponent too large", "1e309", 1, 1, kTooLarge},
      {"the first double too large", "1.7976931348623159e308", 1, 1, kTooLarge},
      {"an exponent of many digits", "1e99999999999999999999999", 1, 1, kTooLarge},
      {"a long number and a text", R"([0.95000000000000000000"x"])", 1, 24, kArrayComma},
      {"a long number and a form feed", "[0.95000000000000000000\f]", 1, 24, kArrayComma},
      {"a long number with a leading zero", "[-00.9500000000000000000]", 1, 2, kLeadingZero},
      {"an integer of 309 digits", std::string(309, '9'), 1, 1, kTooLarge},
  });
}

TEST(ParseRefusalTest, StringsAndUtf8) {
  expectRefusals({
      {"a quote alone", "\"", 1, 1, kUnclosedString},
      {"a text not closed", R"(["a)", 1, 2, kUnclosedString},
      {"not closed, ends with a backslash", "[\n\"a\\", 2, 1, kUnclosedString},
      {"not closed, ends in a unicode escape", R"("\u00)", 1, 1, kUnclosedString},
      {"a line feed", "\"a\nb\"", 1, 3, kControl},
      {"the last control character", "\"\x1F\"", 1, 2, kControl},
      {"an unknown escape", R"("a\x")", 1, 3, "unknown escape in a string"},
      {"a unicode escape of three digits", R"("\u004")", 1, 2, kUnicodeEscape},
      {"a unicode escape with a sign", R"("\u+041")", 1, 2, kUnicodeEscape},
      {"a high surrogate alone", R"("\ud800")", 1, 2, kSurrogate},
      {"a low surrogate alone", R"("\udc00")", 1, 2, kSurrogate},
      {"a high surrogate before a broken escape", R"("\ud800\u12")", 1, 2, kSurrogate},
      {"a high escape before an encoded low one", "\"\\ud83d\xED\xB8\x80\"", 1, 2, kSurrogate},
      {"a stray continuation byte", "\"a\x80\"", 1, 3, kUtf8},
      {"an encoded surrogate", "\"\xED\xA0\x80\"", 1, 2, kUtf8},
      {"beyond the last code point", "\"\xF4\x90\x80\x80\"", 1, 2, kUtf8},
      {"an invalid byte in a name", "{\"\xFF\":1}", 1, 3, kUtf8},
      {"UTF-16 with its byte order mark", "\xFF\xFE[\0]\0"s, 1, 1, kUtf8},
      {"UTF-16 without one", "[\0]\0"s, 1, 2, noValue("a NUL (U+0000)")},
      {"an invalid byte behind another fault", "[1,]\xFF", 1, 4, noValue("']'")},
      {"an invalid byte after the value", "1\xFF", 1, 2, kUtf8},
  });
}

TEST(ParseRefusalTest, Nesting) {
  expectRefusals({
      {"1,001 arrays, the last empty", std::string(1001, '[') + std::string(1001, ']'), 1, 1001,
       kTooDeep},
      {"1,001 objects, never closed", repeated(R"({"a":)", 1001), 1, 5001, kTooDeep},
      {"a second branch too deep", "[0,\n" + repeated("[", 1000), 2, 1000, kTooDeep},
      {"too deep and never closed", std::string(100'000, '['), 1, 1001, kTooDeep},
      {"another fault that comes first", "[x," + repeated("[", 2000), 1, 2, kLiteral},
  });
}

}  // namespace
