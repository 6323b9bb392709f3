#include <gtest/gtest.h>

#include <string>

#include "foundation/json.hpp"
#include "tessel/build/json/core.hpp"

namespace {

using foundation::json::Null;
using foundation::json::Value;
using tessel::build::json::core::extract_anchor_id;
using tessel::build::json::core::has_className;
using Array = Value::Array;
using Object = Value::Object;

struct ClassNameRow {
  const char* description;
  Value json;
  bool answer;
};

TEST(HasClassNameTest, ComparesTheWholeText) {
  const ClassNameRow rows[] = {
      {"the class name", Object{{"className", "LumoAppLineNode"}}, true},
      {"after the other members",
       Object{{"0", 1.0}, {"classNam", 1.0}, {"className", "LumoAppLineNode"}}, true},
      {"more than it", Object{{"className", "LumoAppLineNode2"}}, false},
      {"a NUL after it", Object{{"className", std::string("LumoAppLineNode\0", 16)}}, false},
      {"an empty object", Object{}, false},
      {"a member that is an array", Object{{"className", Array{"LumoAppLineNode"}}}, false},
      {"text", "LumoAppLineNode", false},
  };
  for (const ClassNameRow& row : rows) {
    SCOPED_TRACE(row.description);
    EXPECT_EQ(has_className(row.json, "LumoAppLineNode"), row.answer);
  }
}

TEST(HasClassNameTest, AnEmptyNameIsAName) {
  EXPECT_TRUE(has_className(Object{{"className", ""}}, ""));
  EXPECT_FALSE(has_className(Object{}, ""));
}

struct AnchorRow {
  const char* description;
  Value json;
  std::string prefix;
  std::u16string anchorId;
};

TEST(ExtractAnchorIdTest, PutsThePrefixInFrontOnce) {
  const AnchorRow rows[] = {
      {"without the prefix", Object{{"anchorId", "12ab"}}, "M_", u"M_12ab"},
      {"with the prefix", Object{{"anchorId", "M_12ab"}}, "M_", u"M_12ab"},
      {"with the prefix twice", Object{{"anchorId", "M_M_1"}}, "M_", u"M_M_1"},
      {"the prefix alone", Object{{"anchorId", "M_"}}, "M_", u"M_"},
      {"empty text", Object{{"anchorId", ""}}, "M_", u"M_"},
      {"an empty prefix", Object{{"anchorId", "1"}}, "", u"1"},
      {"an empty prefix and empty text", Object{{"anchorId", ""}}, "", u""},
      {"another prefix", Object{{"anchorId", "M_1"}}, "N-", u"N-M_1"},
      {"text beyond ASCII", Object{{"anchorId", "\u00E9\U0001F600"}}, "M_", u"M_\u00E9\U0001F600"},
      {"ill-formed text", Object{{"anchorId", "\x80"}}, "M_", u"M_\uFFFD"},
      {"no such member", Object{{"anchorid", "1"}}, "M_", u""},
      {"null", Object{{"anchorId", Null()}}, "M_", u""},
      {"an object", Object{{"anchorId", Object{{"anchorId", "1"}}}}, "M_", u""},
      {"not an object", Array{"1"}, "M_", u""},
  };
  for (const AnchorRow& row : rows) {
    SCOPED_TRACE(row.description);
    EXPECT_EQ(extract_anchor_id(row.json, row.prefix), row.anchorId);
  }
}

}  // namespace
