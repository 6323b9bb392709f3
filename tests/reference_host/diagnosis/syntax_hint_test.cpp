#include "reference_host/diagnosis/syntax_hint.hpp"

#include <gtest/gtest.h>

namespace reference_host::diagnosis {
namespace {

TEST(SyntaxHintTest, SaysWhatToWrite) {
  const char* const rows[][2] = {
      {"[{\"ä\": {\"b\": 1},\n{}]",
       "the object that begins at line 1, column 2 has no } yet, or an object in it has none"},
      {R"({"a": {"b\"]": 1]})", "write } instead of ]"},
      {R"({"a": ["b", "c"}, "d": 1})", "write ] instead of }"},
      {R"([{"a": [1}]}])", "there is one } too many, here or before it"},
      {"{\n \"a\": [1}", "the array that begins at line 2, column 7 has no ] yet"},
      {R"([{}, "a": 1, "b": "}"}])", R"(a { is missing before "a")"},
      {R"({"a": [{}, "b": 1})", "the array that begins at line 1, column 7 has no ] yet"},
      {R"({"a": ["b": 1}})", "write { instead of [ at line 1, column 7"},
      {R"({"a": ["b": 1]})", "put members in braces, not in brackets: {...}"},
      {R"([{}, "a": 1])", "put members in braces: {...}"},
      {R"([{}, "a": [1)", "none"},
      {R"({"a": {"b": 1}, {"b": 2}]})", "a [ is missing before the { at line 1, column 7"},
      {R"({"a": "b", "c", "d"]})", "a [ is missing before the first of the values"},
      {R"({"a": 1, 2]})", "a [ is missing before the first of the values"},
      {R"({"a": {}, {}})", "put several values in brackets, with commas between them: [..., ...]"},
      {R"({"a": "b": 1}})", R"(a { is missing before "b")"},
      {R"({"a": "b": 1})", "none"},
      {"[[]", "add the ] that is missing at its end, or at the end of an array in it"},
      {"[1,,2]", "take out one comma"},
      {"{,}", "take it out"},
      {R"({"a": })", "write a value before it"},
      {R"({"a":, "b": 1})", "write a value before it"},
      {R"({"a":, "b"})", "take out the comma"},
      {R"({"a", 1})", "write a colon and a value behind the name"},
      {R"({"a" 1})", "put a colon before it"},
      {R"({"a" = 1})", "write : instead"},
      {"{\"a\": 1\n \"b\": 2}", "put a comma before it"},
      {"[1; 2]", "write a comma instead"},
      {"{\"a\": \"b,\r\n \"c\": 1}",
       "the text that begins at line 1, column 7 has no closing quote"},
      {"[\"a\tb\"]", R"(write \t for a tab)"},
      {"[\"a\x01\"]", "none"},
      {R"(["say "yes""])", R"(the text before it has ended: write \" for a quote in a text, or a )"
                           "closing quote is missing"},
      {R"({className: "a"})", R"(put the name in double quotes: "className")"},
      {"{“a”: 1}", R"(put names and texts in straight double quotes: "...")"},
      {R"({"a": 1,5})", "write a decimal point, not a comma"},
      {"[007]", R"(write 7, or "007" for a text)"},
      {"[01.05.2024]", "put a text in double quotes"},
      {"[1 /* a\n b\n */]", "JSON has no comments: take it out, up to line 3"},
      {"[1 <!-- a -->]", "JSON has no comments: take it out"},
      {"[1, -- a\n2]", "JSON has no comments: take it out"},
      {"[12px]", "put a text in double quotes"},
      {"[mean]", R"(put a text in double quotes: "mean")"},
      {"[True]", "write true"},
      {"[None]", "write null, or leave the member out"},
      {R"(["C:\data"])", R"(write \\ for a backslash)"},
      {"[\"\xE4\"]", "save the file as UTF-8"},
      {" \n", "the text is empty: a document is one JSON value, such as {...}"},
      {"{},\n", "take out the comma"},
      {"{}, {}", "put several values in brackets, with commas between them: [..., ...]"},
      {"{}}", "there is one } too many, here or before it"},
      {R"("a": 1)", "put members in braces: {...}"},
  };
  for (const auto& [text, hint] : rows) {
    try {
      json::parse(text);
      ADD_FAILURE() << text;
    } catch (const json::ParseError& error) {
      EXPECT_EQ(hintForSyntax(text, error).value_or("none"), hint) << text;
    }
  }
}

}  // namespace
}  // namespace reference_host::diagnosis
