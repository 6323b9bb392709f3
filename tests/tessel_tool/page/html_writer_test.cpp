#include "page/html_writer.hpp"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace tessel_tool {
namespace {

struct Text {
  std::u16string_view given;
  std::string_view text;       ///< as it is written between tags
  std::string_view attribute;  ///< and in an attribute
};

const std::vector<Text>& texts() {
  static const std::vector<Text> rows{
      {u"", "", ""},
      {u"plain 'text' > that", "plain 'text' > that", "plain 'text' > that"},
      {u"a<b", "a&lt;b", "a&lt;b"},
      {u"&amp;", "&amp;amp;", "&amp;amp;"},
      {u"say \"x\"", "say \"x\"", "say &quot;x&quot;"},
      {u"</style><!--", "&lt;/style>&lt;!--", "&lt;/style>&lt;!--"},
      {u"\u00E9 & \u6E29\u5EA6 \U0001F600", "\u00E9 &amp; \u6E29\u5EA6 \U0001F600",
       "\u00E9 &amp; \u6E29\u5EA6 \U0001F600"},
      {std::u16string_view(u"\0x", 2), "\\u0000x", "\\u0000x"},
      {u"a\r\nb\tc\b\f", "a\\r\\nb\\tc\\b\\f", "a\\r\\nb\\tc\\b\\f"},
      {u"\x7F\x80\x85\x9F", "\\u007f\\u0080\\u0085\\u009f", "\\u007f\\u0080\\u0085\\u009f"},
      {u"\u2028\u2029", "\\u2028\\u2029", "\\u2028\\u2029"},
      {u"\u202A\u202E\u2066\u2069", "\\u202a\\u202e\\u2066\\u2069", "\\u202a\\u202e\\u2066\\u2069"},
      {u"\uFDCF\uFDD0\uFDEF\uFDF0", "\uFDCF\\ufdd0\\ufdef\uFDF0", "\uFDCF\\ufdd0\\ufdef\uFDF0"},
      {u"\uFFFD\uFFFE\uFFFF", "\uFFFD\\ufffe\\uffff", "\uFFFD\\ufffe\\uffff"},
      {u"\U0001FFFD\U0001FFFE\U0010FFFF", "\U0001FFFD\\ud83f\\udffe\\udbff\\udfff",
       "\U0001FFFD\\ud83f\\udffe\\udbff\\udfff"},
      {std::u16string_view(u"<\xD800", 2), "&lt;\uFFFD", "&lt;\uFFFD"},
      {std::u16string_view(u"\xDC00x", 2), "\uFFFDx", "\uFFFDx"},
      {u"back\\slash", "back\\slash", "back\\slash"},
  };
  return rows;
}

std::string utf8Of(std::u16string_view text) {
  HtmlText out;
  HtmlWriter(out).text(text);
  return std::string(out.view());
}

TEST(HtmlWriter, WritesAnyTextInUtf16) {
  for (const Text& row : texts()) {
    EXPECT_EQ(utf8Of(row.given), row.text);
    HtmlText out;
    HtmlWriter(out).begin("a").attribute("b", row.given).text("");
    EXPECT_EQ(out.view(), "<a b=\"" + std::string(row.attribute) + "\">");
  }
}

TEST(HtmlWriter, WritesWhatIsSpecialAnywhereInALongText) {
  const std::string plain = "plain ~}=;%'\"? ()[]";
  for (int code = 0; code != 0x80; ++code) {
    const std::string character(1, static_cast<char>(code));
    HtmlText alone;
    HtmlWriter(alone).text(character);
    for (std::size_t place = 0; place != plain.size(); ++place) {
      HtmlText out;
      HtmlWriter(out).text(std::string(plain).replace(place, 1, character));
      EXPECT_EQ(out.view(), std::string(plain).replace(place, 1, alone.view()));
    }
  }
}

TEST(HtmlWriter, WritesAnyBytes) {
  struct {
    std::string_view given;
    std::string_view text;
    std::string_view attribute;
  } const rows[] = {
      {"<a href=\"x\">&", "&lt;a href=\"x\">&amp;", "&lt;a href=&quot;x&quot;>&amp;"},
      {"\xFF<\xC3", "\\xff&lt;\\xc3", "\\xff&lt;\\xc3"},
      {"\xEF\xBF\xBE\xEF\xB7\x90", "\\ufffe\\ufdd0", "\\ufffe\\ufdd0"},
      {"\xE2\x80\xAE\x1B", "\\u202e\\u001b", "\\u202e\\u001b"},
      {"\xF0\x9F\xBF\xBF\xF0\x9F\x98\x80", "\\ud83f\\udfff\U0001F600", "\\ud83f\\udfff\U0001F600"},
  };
  for (const auto& [given, text, attribute] : rows) {
    HtmlText out;
    HtmlWriter(out).begin("a").attribute("b", given).text(given);
    EXPECT_EQ(out.view(), "<a b=\"" + std::string(attribute) + "\">" + std::string(text));
  }
}

TEST(HtmlWriter, QuotesTextsSoThatNoTwoAreAlike) {
  struct {
    std::u16string_view given;
    std::string_view written;
  } const rows[] = {
      {u"", R"("")"},       {u"plain", R"("plain")"},   {u"\"\\<\n", R"("\"\\&lt;\n")"},
      {u"\\n", R"("\\n")"}, {u"\uFFFF", R"("\uffff")"},
  };
  for (const auto& [given, written] : rows) {
    HtmlText out;
    HtmlWriter(out).quoted(given);
    EXPECT_EQ(out.view(), written);
  }
}

TEST(HtmlWriter, WritesElementsAttributesNumbersAndLines) {
  HtmlText out;
  HtmlWriter html(out);
  html.doctype().begin("p").attribute("hidden").attribute("min", 0.5).number(std::uint64_t{7});
  html.text(" ").number(-0.5).begin("br").end("p").begin("pre").lines("a<\n\r\nb\n").end("pre");
  html.style("b{}");
  EXPECT_EQ(out.view(),
            "<!DOCTYPE html>\n<p hidden min=\"0.5\">7 -0.5<br></p><pre>a&lt;\n\\r\nb\n</pre>"
            "<style>b{}</style>");
}

TEST(HtmlWriter, KnowsWhichTextsItEscapesNothingOf) {
  for (const std::u16string_view text :
       {u"", u"<&\"\\", u"\u00E9 \U0001F600", u"\u200F\u0301", u"\uFFFD"}) {
    EXPECT_TRUE(isShownAsIs(text)) << utf8Of(text);
  }
  for (const std::u16string_view text :
       {u"a\nb", u"\t", u"\x7F", u"\u0085", u"\u202E", u"\uFFFE", u"\uFDD0x", u"\U0010FFFF"}) {
    EXPECT_FALSE(isShownAsIs(text)) << utf8Of(text);
  }
}

}  // namespace
}  // namespace tessel_tool
