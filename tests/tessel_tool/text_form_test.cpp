#include "text_form.hpp"

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

TEST(TextForm, RecordsAreTellableApart) {
  std::string out = "before\n";
  for (const char* record : {"one", "two\nlines", "", "\u202e\r\n"}) appendRecord(out, record);
  EXPECT_EQ(out,
            "before\n"
            "    - one\n"
            "    - two\n"
            "      lines\n"
            "    - \n"
            "    - \\u202e\\r\n"
            "      \n");
}

}  // namespace
}  // namespace tessel_tool
