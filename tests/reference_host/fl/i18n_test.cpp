#include <gtest/gtest.h>

#include <cstddef>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

#include "fl/i18n.hpp"
#include "reference_host/fl/utf16.hpp"

namespace {

using fl::i18n::utf8_to_ustring;
using reference_host::i18n::ustringToUtf8;
using reference_host::i18n::utf8ToUstring;
using namespace std::string_literals;

struct Utf8Row {
  const char* description;
  std::string utf8;
  std::u16string utf16;
};

const Utf8Row kUtf8Rows[] = {
    {"no text", "", u""},
    {"ASCII", "plain text", u"plain text"},
    {"a NUL inside", "a\0b"s, u"a\0b"s},
    {"two bytes", "\xC2\x80\xC3\xA9\xDF\xBF", u"\u0080\u00E9\u07FF"},
    {"three bytes", "\xE0\xA0\x80\xE2\x82\xAC\xEF\xBF\xBF", u"\u0800\u20AC\uFFFF"},
    {"around the surrogates", "\xED\x9F\xBF\xEE\x80\x80", u"\uD7FF\uE000"},
    {"four bytes", "\xF0\x90\x80\x80\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF",
     u"\U00010000\U0001F600\U0010FFFF"},
    {"a byte order mark is a character", "\xEF\xBB\xBFx", u"\uFEFFx"},
    {"a replacement character of its own", "\xEF\xBF\xBD", u"\uFFFD"},
    {"a stray continuation byte", "a\x80z", u"a\uFFFDz"},
    {"a lead byte before text", "\xC3(", u"\uFFFD("},
    {"two of three bytes", "\xE2\x82z", u"\uFFFDz"},
    {"three of four bytes", "\xF0\x9F\x98z", u"\uFFFDz"},
    {"a cut sequence before a whole one", "\xF0\x9F\x98\xC3\xA9", u"\uFFFD\u00E9"},
    {"an overlong slash in three bytes", "\xE0\x80\xAF", u"\uFFFD\uFFFD\uFFFD"},
    {"an overlong slash in four bytes", "\xF0\x80\x80\xAF", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
    {"the longest overlong of three bytes", "\xE0\x9F\xBF", u"\uFFFD\uFFFD\uFFFD"},
    {"two of four bytes at the end", "z\xF0\x9F", u"z\uFFFD"},
    {"the longest overlong of two bytes", "\xC1\xBF", u"\uFFFD\uFFFD"},
    {"an encoded high surrogate", "\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},
    {"beyond the last code point", "\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
    {"a five-byte form", "\xF8\x88\x80\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"},
    {"the table of the Unicode standard", "\x61\xF1\x80\x80\xE1\x80\xC2\x62\x80\x63\x80\xBF\x64",
     u"a\uFFFD\uFFFD\uFFFDb\uFFFDc\uFFFD\uFFFDd"},
};

TEST(Utf8ToUstringTest, ReplacesEachIllFormedPart) {
  for (const Utf8Row& row : kUtf8Rows) {
    SCOPED_TRACE(row.description);
    EXPECT_EQ(utf8_to_ustring(row.utf8), row.utf16);
  }
}

// Plain text is told by several units at once.
TEST(Utf8ToUstringTest, FindsWhatIsNotPlainAtEveryPlace) {
  for (std::size_t length = 0; length <= 20; ++length) {
    EXPECT_EQ(utf8_to_ustring(std::string(length, 'x')), std::u16string(length, u'x'));
    for (std::size_t place = 0; place <= length; ++place) {
      SCOPED_TRACE(std::to_string(place) + " of " + std::to_string(length));
      std::string utf8(length, 'x');
      std::u16string utf16(length, u'x');
      EXPECT_EQ(utf8_to_ustring(utf8.insert(place, "\xC3\xA9")), utf16.insert(place, u"\u00E9"));
    }
  }
}

struct Utf16Row {
  const char* description;
  std::u16string utf16;
  std::string utf8;
};

const Utf16Row kUtf16Rows[] = {
    {"no text", u"", ""},
    {"ASCII with a NUL inside", u"a\0b"s, "a\0b"s},
    {"one, two and three bytes", u"\u007F\u0080\u07FF\u0800\uFFFF",
     "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF"},
    {"pairs", {0xD800, 0xDC00, 0xDBFF, 0xDFFF}, "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
    {"a high surrogate at the end", {u'a', 0xD83D}, "a\xEF\xBF\xBD"},
    {"a high surrogate before text", {0xD83D, u'a'}, "\xEF\xBF\xBD\x61"},
    {"a low surrogate alone", {0xDE00, u'a'}, "\xEF\xBF\xBD\x61"},
    {"a pair the wrong way round", {0xDE00, 0xD83D}, "\xEF\xBF\xBD\xEF\xBF\xBD"},
    {"a high surrogate before a pair", {0xD83D, 0xD83D, 0xDE00}, "\xEF\xBF\xBD\xF0\x9F\x98\x80"},
    {"a low surrogate after a pair", {0xD83D, 0xDE00, 0xDE00}, "\xF0\x9F\x98\x80\xEF\xBF\xBD"},
};

TEST(UstringToUtf8Test, ReplacesEachLoneSurrogate) {
  for (const Utf16Row& row : kUtf16Rows) {
    SCOPED_TRACE(row.description);
    EXPECT_EQ(ustringToUtf8(row.utf16), row.utf8);
  }
}

TEST(UtfConversionTest, EveryCodePointComesBack) {
  std::u16string all;
  for (char32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
    if (codePoint >= 0xD800 && codePoint <= 0xDFFF) continue;
    if (codePoint < 0x10000) {
      all += static_cast<char16_t>(codePoint);
    } else {
      all += static_cast<char16_t>(0xD800 + ((codePoint - 0x10000) >> 10U));
      all += static_cast<char16_t>(0xDC00 + ((codePoint - 0x10000) & 0x3FFU));
    }
  }
  const std::string utf8 = ustringToUtf8(all);
  EXPECT_EQ(utf8.size(), 0x80U + 2 * 0x780U + 3 * (0xF800U - 0x800U) + 4 * 0x100000U);
  EXPECT_TRUE(utf8_to_ustring(utf8) == all);
}

TEST(UtfConversionTest, ThePieceLengthDoesNotMatter) {
  for (const Utf8Row& row : kUtf8Rows) {
    for (std::size_t piece = 4; piece <= row.utf8.size() + 1; ++piece) {
      SCOPED_TRACE(std::string(row.description) + ", pieces of " + std::to_string(piece));
      EXPECT_EQ(utf8ToUstring(row.utf8, piece), row.utf16);
    }
  }
  for (const Utf16Row& row : kUtf16Rows) {
    for (std::size_t piece = 2; piece <= row.utf16.size() + 1; ++piece) {
      SCOPED_TRACE(std::string(row.description) + ", pieces of " + std::to_string(piece));
      EXPECT_EQ(ustringToUtf8(row.utf16, piece), row.utf8);
    }
  }
}

TEST(UtfConversionTest, ThePieceLengthDoesNotMatterForRandomText) {
  constexpr unsigned char kBytes[] = {0x41, 0x80, 0x8F, 0x90, 0xA0, 0xBF, 0xC2, 0xE0,
                                      0xE2, 0xED, 0xF0, 0xF1, 0xF4, 0xF8, 0xC0};
  constexpr char16_t kUnits[] = {0x41, 0xE9, 0x20AC, 0xD800, 0xDBFF, 0xDC00, 0xDFFF};
  std::mt19937 random(20261121);
  for (int round = 0; round < 20'000; ++round) {
    std::string utf8(random() % 24, '\0');
    for (char& byte : utf8) byte = static_cast<char>(kBytes[random() % std::size(kBytes)]);
    std::u16string utf16(random() % 24, u'\0');
    for (char16_t& unit : utf16) unit = kUnits[random() % std::size(kUnits)];
    const std::size_t piece = 4 + random() % 12;
    ASSERT_EQ(utf8ToUstring(utf8, piece), utf8_to_ustring(utf8)) << testing::PrintToString(utf8);
    ASSERT_EQ(ustringToUtf8(utf16, piece), ustringToUtf8(utf16)) << testing::PrintToString(utf16);
  }
}

}  // namespace
