#include "page/code_line.hpp"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "reference_host/fl/utf16.hpp"

namespace tessel_tool {
namespace {

/// The pieces in their order: text as it is, a control as [index:what it covers] with a mark of why
/// it does not stand where its columns say.
std::string divided(std::u16string_view code, const std::vector<Columns>& controls) {
  std::string text;
  for (const LinePiece& piece : divideLine(code, controls)) {
    const std::string part =
        reference_host::i18n::ustringToUtf8(code.substr(piece.begin, piece.end - piece.begin));
    if (piece.control == LinePiece::kText) {
      text += part;
      continue;
    }
    text += '[' + std::to_string(piece.control);
    if (piece.faults.missing) text += '?';
    if (piece.faults.reversed) text += "<>";
    if (piece.faults.beyond) text += '>';
    if (piece.faults.overlap) text += '&';
    text += ':' + part + ']';
  }
  return text;
}

constexpr std::uint64_t kHuge = 18446744073709551615U;

TEST(DivideLine, PutsControlsInPlaceOfTheirColumns) {
  struct {
    std::u16string_view code;
    std::vector<Columns> controls;
    std::string_view pieces;
  } const rows[] = {
      {u"x = fit(y);", {{4, 10}}, "x = [0:fit(y)];"},
      {u"abc", {{0, 3}}, "[0:abc]"},
      {u"abcdef", {{4, 5}, {0, 2}}, "[1:ab]cd[0:e]f"},
      {u"abcdef", {{0, 2}, {2, 4}}, "[0:ab][1:cd]ef"},
      {u"abc", {{1, 1}}, "a[0:]bc"},
      {u"abc", {{3, 3}}, "abc[0:]"},
      {u"abc", {{1, 2}, {1, 2}}, "a[0:b][1&:]c"},
      {u"abcdef", {{0, 4}, {2, 5}, {3, 3}}, "[0:abcd][1&:e][2&:]f"},
      {u"abc", {{2, 9}}, "ab[0>:c]"},
      {u"abc", {{4, 9}, {kHuge, kHuge}}, "abc[0>:][1>:]"},
      {u"abc", {{2, 1}}, "ab[0<>:]c"},
      {u"abc", {{kHuge, 1}}, "abc[0<>>:]"},
      {u"abc", {{{}, {}}}, "abc[0?:]"},
      {u"abc", {{1, {}}, {{}, 2}, {0, 1}}, "[2:a]bc[0?:][1?:]"},
      {u"", {{0, 1}, {{}, {}}}, "[0>:][1?:]"},
      {u"abcd", {{1, 9}, {2, 10}}, "a[0>:bcd][1>&:]"},
      {u"abcd", {{0, 3}, {2, 1}}, "[0:abc][1<>&:]d"},
      {u"abc", {}, "abc"},
  };
  for (const auto& [code, controls, pieces] : rows) EXPECT_EQ(divided(code, controls), pieces);
}

TEST(DivideLine, KnowsWhatControlsWouldCover) {
  struct {
    Columns columns;
    std::u16string_view covered;
  } const rows[] = {
      {{5, 15}, u"56789ABCDE"}, {{2, 4}, u"23"}, {{14, 99}, u"EF"}, {{3, 3}, u""}, {{5, 3}, u""},
      {{3, {}}, u""},           {{99, 99}, u""},
  };
  for (const auto& [columns, covered] : rows) {
    for (const LinePiece& piece : divideLine(u"0123456789ABCDEF", {{0, 10}, columns})) {
      if (piece.control == 1) {
        EXPECT_EQ(piece.covered, covered);
      }
    }
  }
}

TEST(DivideLine, EndsNoPieceInsideASurrogatePair) {
  struct {
    Columns columns;
    std::string_view pieces;
  } const rows[] = {
      {{1, 3}, "a[0:\U0001F600]b"}, {{2, 3}, "a[0:\U0001F600]b"}, {{1, 2}, "a[0:\U0001F600]b"},
      {{2, 2}, "a[0:]\U0001F600b"}, {{0, 2}, "[0:a\U0001F600]b"}, {{2, 4}, "a[0:\U0001F600b]"},
  };
  for (const auto& [columns, pieces] : rows) EXPECT_EQ(divided(u"a\U0001F600b", {columns}), pieces);
}

}  // namespace
}  // namespace tessel_tool
