#include "tessel/build/json/core.hpp"

#include <gtest/gtest.h>

#include <string>

#include "support/json.hpp"

namespace {

using tessel::build::json::core::extract_anchor_id;
using tessel::build::json::core::has_className;
using test_support::json;

TEST(HasClassNameTest, ComparesTheWholeText) {
  const struct {
    const char* json;
    const char* name;
    bool answer;
  } rows[] = {
      {R"({"className": "Line"})", "Line", true},
      {R"({"0": 1, "classNam": 1, "className": "Line", "d": 1})", "Line", true},
      {R"({"className": "Line2"})", "Line", false},
      {R"({"className": "Line\u0000"})", "Line", false},
      {R"({"className": ["Line"]})", "Line", false},
      {R"({"classNam": "Line", "d": "Line"})", "Line", false},
      {R"("Line")", "Line", false},
      {R"({"className": ""})", "", true},
      {"{}", "", false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(has_className(json(row.json), row.name), row.answer) << row.json;
  }
}

TEST(ExtractAnchorIdTest, PutsThePrefixInFrontOnce) {
  const struct {
    const char* json;
    const char* prefix;
    const char16_t* anchorId;
  } rows[] = {
      {R"({"anchorId": "12ab"})", "M_", u"M_12ab"},
      {R"({"anchorId": "M_12ab"})", "M_", u"M_12ab"},
      {R"({"anchorId": "M_M_1"})", "M_", u"M_M_1"},
      {R"({"anchorId": ""})", "M_", u"M_"},
      {R"({"anchorId": "1"})", "", u"1"},
      {R"({"anchorId": "M_1"})", "N-", u"N-M_1"},
      {R"({"anchorId": "\u00E9\ud83d\ude00"})", "M_", u"M_\u00E9\U0001F600"},
      {R"({"anchorid": "1"})", "M_", u""},
      {R"({"anchorId": {"anchorId": "1"}})", "M_", u""},
      {R"(["1"])", "M_", u""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(extract_anchor_id(json(row.json), row.prefix), row.anchorId) << row.json;
  }
}

}  // namespace
