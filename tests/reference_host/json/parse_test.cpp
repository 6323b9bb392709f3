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

namespace {

using foundation::json::Null;
using foundation::json::Value;
using reference_host::json::checkSyntax;
using reference_host::json::parse;
using reference_host::json::parseInPlace;
using reference_host::json::ParseReport;
using Array = Value::Array;
using Object = Value::Object;
using namespace std::string_literals;

struct Row {
  const char* description;
  std::string text;
  Value value;
};

void expectValues(const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    SCOPED_TRACE(row.description);
    EXPECT_EQ(parse(row.text), row.value);
    EXPECT_EQ(parseInPlace(row.text), row.value);
    EXPECT_NO_THROW(checkSyntax(row.text));
  }
}

TEST(ParseTest, Structure) {
  expectValues({
      {"null", "null", Null()},
      {"true", "true", true},
      {"false", "false", false},
      {"a number alone", "42", 42.0},
      {"a text alone", R"("text")", "text"},
      {"an empty text alone", R"("")", ""},
      {"an empty array", "[]", Array{}},
      {"an empty object", "{}", Object{}},
      {"an empty array with space inside", "[ \t\r\n ]", Array{}},
      {"an empty object with space inside", "{ \t\r\n }", Object{}},
      {"every kind of space around a value", " \t\r\n null \t\r\n ", Null()},
      {"a line feed after the value", "1\n", 1.0},
      {"every kind of element", R"([null,true,false,-1.5,"x",[],{}])",
       Array{Null(), true, false, -1.5, "x", Array{}, Object{}}},
      {"space around commas", "[ 1 , 2 ,\n3 ]", Array{1.0, 2.0, 3.0}},
      {"space around colons", R"({ "a" : 1 , "b"	:	2 })",
       Object{{"a", 1.0}, {"b", 2.0}}},
      {"empty containers in each other", "[[],[[]],{}]",
       Array{Array{}, Value(Array(1, Array{})), Object{}}},
      {"values after inner containers", R"({"a":[{"b":1},2],"c":3})",
       Object{{"a", Array{Object{{"b", 1.0}}, 2.0}}, {"c", 3.0}}},
      {"an empty member name", R"({"":0})", Object{{"", 0.0}}},
      {"an escaped member name", R"({"\u0061\n":0})", Object{{"a\n", 0.0}}},
      {"member names are ordered by bytes", R"({"b":1,"a":2,"B":3})",
       Object{{"B", 3.0}, {"a", 2.0}, {"b", 1.0}}},
      {"brackets in texts", R"(["]","}",",",":"])", Array{"]", "}", ",", ":"}},
      {"the last of two members holds", R"({"a":1,"a":2})", Object{{"a", 2.0}}},
      {"a container replaces a scalar", R"({"a":1,"b":0,"a":[2]})",
       Object{{"a", Array{2.0}}, {"b", 0.0}}},
      {"a scalar replaces a container", R"({"a":{"b":1},"a":null})", Object{{"a", Null()}}},
      {"an array replaces an array", R"({"a":[1,2],"a":[3]})", Object{{"a", Array{3.0}}}},
      {"an object replaces an object", R"({"a":{"b":1},"a":{"c":2}})",
       Object{{"a", Object{{"c", 2.0}}}}},
      {"names that are one after unescaping", R"({"a":1,"\u0061":2})", Object{{"a", 2.0}}},
      {"names that differ in case", R"({"a":1,"A":2})", Object{{"A", 2.0}, {"a", 1.0}}},
  });
}

TEST(ParseTest, Texts) {
  expectValues({
      {"all short escapes", R"("\"\\\/\b\f\n\r\t")", "\"\\/\b\f\n\r\t"},
      {"a unicode escape", R"("\u20AC")", "\u20AC"},
      {"hexadecimal digits of both cases", R"("\u00e9\u00E9\uaBcD")", "\u00E9\u00E9\uABCD"},
      {"an escaped NUL", R"("a\u0000b")", "a\0b"s},
      {"an escaped control", R"("\u001f")", "\x1F"},
      {"the last code point below the surrogates", R"("\ud7ff")", "\uD7FF"},
      {"the first code point above the surrogates", R"("\ue000")", "\uE000"},
      {"the last code point of the plane", R"("\uffff")", "\uFFFF"},
      {"a pair of surrogates", R"("\ud83d\ude00")", "\U0001F600"},
      {"the first pair", R"("\ud800\udc00")", "\U00010000"},
      {"the last pair", R"("\uDBFF\uDFFF")", "\U0010FFFF"},
      {"a pair between letters", R"("a\ud83d\ude00b")", "a\U0001F600b"},
      {"two pairs", R"("\ud83d\ude00\ud83d\ude01")", "\U0001F600\U0001F601"},
      {"an escaped backslash before u", R"("\\u0041")", "\\u0041"},
      {"an escaped backslash at the end", R"("\\")", "\\"},
      {"a slash as it is", R"("a/b")", "a/b"},
      {"delete as it is", "\"\x7F\"", "\x7F"},
      {"two, three and four bytes", "\"\u00E9\u20AC\U0001F600\"", "\u00E9\u20AC\U0001F600"},
      {"line separators as they are", "\"\u2028\u2029\"", "\u2028\u2029"},
      {"the last code point", "\"\U0010FFFF\"", "\U0010FFFF"},
      {"a byte order mark inside", "\"\uFEFF\"", "\uFEFF"},
      {"a long text", "\"" + std::string(100'000, 'x') + "\"", std::string(100'000, 'x')},
      {"quotes escaped across block borders", "\"" + std::string(62, 'x') + R"(\\\"\\")",
       std::string(62, 'x') + R"(\"\)"},
  });
}

TEST(ParseTest, Numbers) {
  expectValues({
      {"zero", "0", 0.0},
      {"a capital exponent", "1E2", 100.0},
      {"an exponent with a plus sign", "1e+2", 100.0},
      {"an exponent with leading zeros", "1e002", 100.0},
      {"the integer above it, to even", "9007199254740993", 9007199254740992.0},
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
      {"the largest double", "1.7976931348623157e308", std::numeric_limits<double>::max()},
      {"just below the first that is too large", "1.7976931348623158e308",
       std::numeric_limits<double>::max()},
      {"the smallest normal double", "2.2250738585072014e-308", std::numeric_limits<double>::min()},
      {"the smallest double", "5e-324", std::numeric_limits<double>::denorm_min()},
      {"rounded up to the smallest double", "3e-324", std::numeric_limits<double>::denorm_min()},
      {"an exponent of many digits below", "1e-99999999999999999999999", 0.0},
      {"zero with an exponent of many digits", "0e99999999999999999999999", 0.0},
      {"halfway, to even", "9007199254740993.0", 9007199254740992.0},
      {"a digit above halfway", "9007199254740993.00000000000000000000000000000000000001",
       9007199254740994.0},
  });
}

TEST(ParseTest, SkipsALeadingByteOrderMark) {
  EXPECT_EQ(parse("\uFEFF{\"a\":1}"), Value(Object{{"a", 1.0}}));
  EXPECT_EQ(parse("\uFEFF 1"), Value(1.0));
  EXPECT_EQ(parseInPlace("\uFEFF{\"a\":1}"), Value(Object{{"a", 1.0}}));
  EXPECT_EQ(parseInPlace("\uFEFF 1"), Value(1.0));
}

TEST(ParseTest, ReportsDuplicatesAndWhereTheTextLies) {
  const struct {
    std::string text;
    std::size_t duplicates;
  } rows[] = {
      {"{}", 0},
      {R"({"a":1,"b":{"a":1}})", 0},
      {R"({"a":1,"a":2})", 1},
      {R"([{"a":1,"b":0,"a":2,"\u0061":3},{"a":1}])", 2},
      {R"({"a":{"b":1,"b":2},"a":[{"c":1,"c":2}]})", 3},
      {R"({"b":1,"a":2,"b":3,"a":4})", 2},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    for (const char* const mark : {"", "\uFEFF"}) {
      std::string text = mark + row.text;
      ParseReport report{99, "left over"};
      const Value value = parse(text, report);
      EXPECT_EQ(report.duplicateMembers, row.duplicates);
      EXPECT_EQ(report.text, row.text);
      report = {99, "left over"};
      EXPECT_EQ(parseInPlace(text, report), value);
      EXPECT_EQ(report.duplicateMembers, row.duplicates);
      EXPECT_EQ(report.text, row.text);
    }
  }
}

std::string nestedText(std::size_t depth) {
  std::string text;
  std::string closing;
  for (std::size_t level = 0; level < depth; ++level) {
    const bool isArray = level % 2 == 0;
    text += isArray ? "[" : "{\"a\":";
    closing += isArray ? ']' : '}';
  }
  return text + "0" + std::string(closing.rbegin(), closing.rend());
}

std::size_t depthOf(const Value& value) {
  std::size_t depth = 0;
  for (const Value* inner = &value;; ++depth) {
    if (const auto* elements = inner->get_if<Array>()) {
      inner = &elements->front();
    } else if (inner->get_if<Object>() != nullptr) {
      inner = &(*inner)["a"];
    } else {
      return depth;
    }
  }
}

TEST(ParseTest, AcceptsAThousandLevels) {
  EXPECT_EQ(depthOf(parse(nestedText(1000))), 1000U);
  EXPECT_EQ(parse(std::string(1000, '[') + std::string(1000, ']')) == Value(), false);
  EXPECT_NO_THROW(checkSyntax(nestedText(1000)));
}

TEST(ParseTest, ManySiblingsAreNoNesting) {
  std::string text = "[";
  for (int index = 0; index < 5000; ++index) text += "[{}],";
  text += "[]]";
  EXPECT_EQ(parse(text).get_if<Array>()->size(), 5001U);
}

TEST(ParseTest, ReadsTheGivenTextOnly) {
  EXPECT_EQ(parse(std::string_view("[1]]]]", 3)), Value(Array{1.0}));
  EXPECT_EQ(parse(std::string_view("123", 2)), Value(12.0));
  EXPECT_EQ(parse(std::string_view("truely", 4)), Value(true));
  // A buffer of exactly the text's size, so that a memory checker sees a read beyond it.
  const std::string text = R"(["text",12345])";
  const auto buffer = std::make_unique<char[]>(text.size());
  text.copy(buffer.get(), text.size());
  EXPECT_EQ(parse(std::string_view(buffer.get(), text.size())), Value(Array{"text", 12345.0}));
}

}  // namespace
