#include "tessel_tool/text_form.hpp"

#include <gtest/gtest.h>

#include <string>

namespace tessel_tool {
namespace {

TEST(TextForm, ShortNames) {
  EXPECT_EQ(shortName("a::b::Name"), "Name");
  EXPECT_EQ(shortName("Name"), "Name");
  EXPECT_EQ(shortName("a::"), "");
  EXPECT_EQ(shortName(""), "");
}

TEST(TextForm, OneLine) {
  EXPECT_EQ(onOneLine("plain \"text\" with \\ and \u00e4"), "plain \"text\" with \\ and \u00e4");
  EXPECT_EQ(onOneLine("a\nb\tc\rd"), "a\\nb\\tc\\rd");
  EXPECT_EQ(onOneLine(std::string("\0\x1b\x7f", 3)), "\\u0000\\u001b\\u007f");
}

TEST(TextForm, RecordsAreTellableApart) {
  std::string out = "before\n";
  appendRecords(out, {"one", "two\nlines", ""}, "    ");
  EXPECT_EQ(out,
            "before\n"
            "    - one\n"
            "    - two\n"
            "      lines\n"
            "    - \n");
}

}  // namespace
}  // namespace tessel_tool
