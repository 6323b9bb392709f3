#include <gtest/gtest.h>
#include <unicode/ustring.h>

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <random>
#include <string>

#include "fl/i18n.hpp"
#include "reference_host/fl/utf16.hpp"

namespace {

using fl::i18n::utf8_to_ustring;
using reference_host::i18n::ustringToUtf8;
using namespace std::string_literals;

constexpr UChar32 kReplacement = 0xFFFD;

std::u16string toUtf16(const std::string& utf8) {
  std::u16string utf16(utf8.size(), u'\0');
  std::int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strFromUTF8WithSub(utf16.data(), static_cast<std::int32_t>(utf16.size()), &length, utf8.data(),
                       static_cast<std::int32_t>(utf8.size()), kReplacement, nullptr, &status);
  EXPECT_FALSE(U_FAILURE(status));
  return utf16.substr(0, static_cast<std::size_t>(length));
}

std::string toUtf8(const std::u16string& utf16) {
  std::string utf8(3 * utf16.size(), '\0');
  std::int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strToUTF8WithSub(utf8.data(), static_cast<std::int32_t>(utf8.size()), &length, utf16.data(),
                     static_cast<std::int32_t>(utf16.size()), kReplacement, nullptr, &status);
  EXPECT_FALSE(U_FAILURE(status));
  return utf8.substr(0, static_cast<std::size_t>(length));
}

struct Row {
  const char* description;
  std::string utf8;
  std::u16string utf16;
};

const Row kUtf8Rows[] = {
    {"two bytes", "\xC2\x80\xC3\xA9\xDF\xBF", u"\u0080\u00E9\u07FF"},
    {"three bytes", "\xE0\xA0\x80\xE2\x82\xAC\xEF\xBF\xBF", u"\u0800\u20AC\uFFFF"},
    {"around the surrogates", "\xED\x9F\xBF\xEE\x80\x80", u"\uD7FF\uE000"},
    {"four bytes", "\xF0\x90\x80\x80\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF",
     u"\U00010000\U0001F600\U0010FFFF"},
    {"a byte order mark is a character", "\xEF\xBB\xBFx", u"\uFEFFx"},
    {"a cut sequence before a whole one", "\xF0\x9F\x98\xC3\xA9", u"\uFFFD\u00E9"},
    {"two of four bytes at the end", "z\xF0\x9F", u"z\uFFFD"},
    {"an encoded high surrogate", "\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},
    {"beyond the last code point", "\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
    {"the table of the Unicode standard", "\x61\xF1\x80\x80\xE1\x80\xC2\x62\x80\x63\x80\xBF\x64",
     u"a\uFFFD\uFFFD\uFFFDb\uFFFDc\uFFFD\uFFFDd"},
};

const Row kUtf16Rows[] = {
    {"a NUL inside", "a\0b"s, u"a\0b"s},
    {"one, two and three bytes", "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF",
     u"\u007F\u0080\u07FF\u0800\uFFFF"},
    {"pairs", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", {0xD800, 0xDC00, 0xDBFF, 0xDFFF}},
    {"a high surrogate at the end", "a\xEF\xBF\xBD", {u'a', 0xD83D}},
    {"a low surrogate alone", "\xEF\xBF\xBD\x61", {0xDE00, u'a'}},
    {"a pair the wrong way round", "\xEF\xBF\xBD\xEF\xBF\xBD", {0xDE00, 0xD83D}},
    {"a high surrogate before a pair", "\xEF\xBF\xBD\xF0\x9F\x98\x80", {0xD83D, 0xD83D, 0xDE00}},
};

TEST(UtfConversionTest, ReplacesEachIllFormedPart) {
  for (const Row& row : kUtf8Rows) {
    SCOPED_TRACE(row.description);
    EXPECT_EQ(utf8_to_ustring(row.utf8), row.utf16);
  }
  for (const Row& row : kUtf16Rows) {
    SCOPED_TRACE(row.description);
    EXPECT_EQ(ustringToUtf8(row.utf16), row.utf8);
  }
}

// Plain text is told by several units at once.
TEST(UtfConversionTest, FindsWhatIsNotPlainAtEveryPlace) {
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

TEST(UtfConversionTest, ConvertsAsIcuDoes) {
  constexpr unsigned char kBytes[] = {0x41, 0x80, 0x8F, 0x90, 0xA0, 0xBF, 0xC2, 0xE0,
                                      0xE2, 0xED, 0xF0, 0xF1, 0xF4, 0xF8, 0xC0};
  constexpr char16_t kUnits[] = {0x41, 0xE9, 0x20AC, 0xD800, 0xDBFF, 0xDC00, 0xDFFF};
  std::mt19937 random(20261121);
  for (int round = 0; round < 20'000; ++round) {
    std::string utf8(random() % 24, '\0');
    for (char& byte : utf8) byte = static_cast<char>(kBytes[random() % std::size(kBytes)]);
    std::u16string utf16(random() % 24, u'\0');
    for (char16_t& unit : utf16) unit = kUnits[random() % std::size(kUnits)];
    ASSERT_EQ(utf8_to_ustring(utf8), toUtf16(utf8)) << testing::PrintToString(utf8);
    ASSERT_EQ(ustringToUtf8(utf16), toUtf8(utf16)) << testing::PrintToString(utf16);
  }
}

}  // namespace
