#include "reference_host/json/text_places.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "reference_host/json/parse.hpp"

namespace reference_host::json {

std::ostream& operator<<(std::ostream& out, const TextPlace& place) {
  return out << place.line << ':' << place.column;
}

namespace {

std::string shown(const TextRange& range) {
  std::ostringstream text;
  text << range.begin << '-' << range.end;
  return text.str();
}

TEST(TextPlaces, CountsLinesAndCodePoints) {
  const std::string text = "ab\n\r\nc\rd\xC3\xA4\xF0\x9F\x98\x80 e\n";
  const struct {
    std::size_t offset;
    TextPlace place;
  } rows[] = {{0, {1, 1}}, {2, {1, 3}},  {3, {2, 1}},  {4, {2, 2}},  {5, {3, 1}},  {7, {3, 3}},
              {8, {3, 4}}, {10, {3, 5}}, {14, {3, 6}}, {15, {3, 7}}, {16, {3, 8}}, {17, {4, 1}}};
  for (const auto& row : rows) EXPECT_EQ(placeAt(text, row.offset), row.place) << row.offset;
}

struct ValueRow {
  const char* description;
  const char* text;
  const char* pointer;
  const char* value;  // "line:column-line:column"
  const char* key;    // the same; empty for none
  std::size_t missingTokens;
};

constexpr ValueRow kValues[] = {
    {"the outermost value", " [1]\n", "", "1:2-1:5", "", 0},
    {"a number that ends the text", " -1.5e3", "", "1:2-1:8", "", 0},
    {"the last member", R"({"a":1, "b" : null})", "/b", "1:15-1:19", "1:9-1:12", 0},
    {"an element behind other containers", R"([[0],{"a":1},[7]])", "/2/0", "1:15-1:16", "", 0},
    {"the eleventh element", "[0,0,0,0,0,0,0,0,0,0,11]", "/10", "1:22-1:24", "", 0},
    {"below a container over lines", "{\"a\":[\r\n  1\r\n ]\r\n}", "/a/0", "2:3-2:4", "", 0},
    {"columns are code points", "{\"\xC3\xA4\xF0\x9F\x98\x80\":1}", "/\xC3\xA4\xF0\x9F\x98\x80",
     "1:7-1:8", "1:2-1:6", 0},
    {"brackets, quotes and commas in texts", R"({"]\"},":"[{\\","b":1})", "/b", "1:21-1:22",
     "1:17-1:20", 0},
    {"an escaped name", R"({"\u0061\n":1})", "/a\n", "1:13-1:14", "1:2-1:12", 0},
    {"a name with slash and tilde", R"({"a/~1":1})", "/a~1~01", "1:9-1:10", "1:2-1:8", 0},
    {"an empty name", R"({"":{"":1}})", "//", "1:9-1:10", "1:6-1:8", 0},
    {"an empty container", R"({"a":{ }})", "/a", "1:6-1:9", "1:2-1:5", 0},
    {"more that is missing", R"({"a":{"b":1}})", "/a/b/c/0", "1:11-1:12", "1:7-1:10", 2},
    {"all is missing", R"( {"a":1})", "/b/c", "1:2-1:9", "", 2},
    {"an index with a zero before it", "[1,2]", "/01", "1:1-1:6", "", 1},
    {"the last of two members", R"({"a":1,"a":22})", "/a", "1:12-1:14", "1:8-1:11", 0},
    {"what only the first of two had", R"({"a":{"b":{"c":1}},"a":{"b":2}})", "/a/b/c", "1:29-1:30",
     "1:25-1:28", 1},
    {"what the first of two had and a scalar has not", R"({"a":{"b":1},"a":5})", "/a/b",
     "1:18-1:19", "1:14-1:17", 1},
    {"what both have", R"({"a":[1,2],"a":[3,4]})", "/a/1", "1:19-1:20", "", 0},
};

TEST(TextPlaces, Values) {
  for (const ValueRow& row : kValues) {
    SCOPED_TRACE(row.description);
    ASSERT_NO_THROW(parse(row.text));
    const std::vector<ValuePlace> places = findValues(row.text, {row.pointer});
    ASSERT_EQ(places.size(), 1U);
    EXPECT_EQ(shown(places[0].value), row.value);
    EXPECT_EQ(places[0].key ? shown(*places[0].key) : "", row.key);
    EXPECT_EQ(places[0].missingTokens, row.missingTokens);
  }
}

TEST(TextPlaces, ManyValuesInTheOrderOfTheirPointers) {
  std::string found;
  for (const ValuePlace& place :
       findValues(R"({"a":[1,{"b":2}],"c":3})", {"/c", "/a/1/b", "", "/a/1", "/c", "/a/9"})) {
    found += shown(place.value) + ' ';
  }
  EXPECT_EQ(found, "1:22-1:23 1:14-1:15 1:1-1:24 1:9-1:16 1:22-1:23 1:6-1:17 ");
}

TEST(TextPlaces, ManyElementsInAnyOrderOfTheirPointers) {
  std::string text = "[";
  std::vector<std::string> pointers;
  for (int index = 0; index != 120; ++index) {
    text += R"({"x":0,"xy":0},)";
    for (const char* member : {"", "/x", "/xy"}) {
      pointers.push_back('/' + std::to_string(index) + member);
    }
  }
  text += "0]";
  for (const bool isBackwards : {false, true}) {
    if (isBackwards) std::reverse(pointers.begin(), pointers.end());
    const auto places = findValues(text, {pointers.begin(), pointers.end()});
    for (std::size_t index = 0; index != pointers.size(); ++index) {
      EXPECT_EQ(shown(places[index].value), shown(findValues(text, {pointers[index]})[0].value));
      EXPECT_EQ(places[index].missingTokens, 0U) << pointers[index];
    }
  }
}

struct DuplicateRow {
  const char* description;
  const char* text;
  std::vector<std::string> found;  // pointer, name, place of the key and of the next one
};

TEST(TextPlaces, Duplicates) {
  const DuplicateRow rows[] = {
      {"none", R"([{"a":1,"b":{"a":1}},{"a":1}])", {}},
      {"of three the first two",
       R"({"a":1,"a":2,"a":3})",
       {"/a a 1:2-1:5 1:8-1:11", "/a a 1:8-1:11 1:14-1:17"}},
      {"names that are one after unescaping", R"({"\u0061":1,"a":2})", {"/a a 1:2-1:10 1:13-1:16"}},
      {"in the order of the text",
       R"({"a":{"b":1,"b":2},"c":0,"c":0,"a":1})",
       {"/a a 1:2-1:5 1:32-1:35", "/a/b b 1:7-1:10 1:13-1:16", "/c c 1:20-1:23 1:26-1:29"}},
      {"below elements", "[0,{\"x\":[\n{\"y\":1,\"y\":1}]}]", {"/1/x/0/y y 2:2-2:5 2:8-2:11"}},
      {"names that a pointer escapes", R"({"a/~":1,"a/~":1})", {"/a~1~0 a/~ 1:2-1:7 1:10-1:15"}},
  };
  for (const DuplicateRow& row : rows) {
    SCOPED_TRACE(row.description);
    std::vector<std::string> found;
    for (const DuplicateMember& member : findDuplicates(row.text)) {
      found.push_back(member.pointer + ' ' + member.name + ' ' + shown(member.key) + ' ' +
                      shown(member.next));
    }
    EXPECT_EQ(found, row.found);
    ParseReport report;
    parse(row.text, report);
    EXPECT_EQ(report.duplicateMembers, row.found.size());
  }
}

TEST(TextPlaces, NamesThatBeginWithOthersAreToldApart) {
  const auto places = findValues(R"({"a": {"x": 1}, "a.b": 2})", {"/a", "/a.b", "/a/x"});
  ASSERT_EQ(places.size(), 3U);
  EXPECT_EQ(places[0].value.begin, (TextPlace{1, 7}));
  EXPECT_EQ(places[1].value.begin, (TextPlace{1, 24}));
  EXPECT_EQ(places[2].value.begin, (TextPlace{1, 13}));
}
}  // namespace
}  // namespace reference_host::json
