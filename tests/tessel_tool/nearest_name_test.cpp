#include "nearest_name.hpp"

#include <gtest/gtest.h>

namespace tessel_tool {
namespace {

TEST(NearestName, TakesTheFewestEdits) {
  const struct {
    const char* word;
    const char* nearest;
  } rows[] = {
      {"import", "import"},
      {"imports", "import"},
      {"mport", "import"},
      {"export", "import"},
      {"imp", "import"},
      {"miport", "import"},
      {"expalin", "explain"},
      {"buidlers", "builders"},
      {"build", "builders"},
      {"im", ""},
      {"list", ""},
      {"Xyzzy", ""},
      {"", ""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(nearestName(row.word, {"import", "explain", "builders"}), row.nearest) << row.word;
  }
}

TEST(NearestName, TheFirstOfTwoThatAreAsNear) {
  EXPECT_EQ(nearestName("aac", {"aax", "aab", "aacd"}), "aax");
  EXPECT_EQ(nearestName("ab", {"ax", "ba"}), "ax");
  EXPECT_EQ(nearestName("abcd", {"axxd", "bacd"}), "bacd");
  EXPECT_EQ(nearestName("word", {}), "");
}

}  // namespace
}  // namespace tessel_tool
