#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "foundation/json.hpp"
#include "tessel/build/json/core.hpp"

namespace {

using foundation::json::Null;
using foundation::json::Undefined;
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
      {"among other members", Object{{"a", 1.0}, {"className", "LumoAppLineNode"}}, true},
      {"after the other members",
       Object{{"0", 1.0}, {"classNam", 1.0}, {"className", "LumoAppLineNode"}}, true},
      {"only members before it", Object{{"0", 1.0}, {"classNam", 1.0}}, false},
      {"only members after it", Object{{"classNameX", "LumoAppLineNode"}, {"x", 1.0}}, false},
      {"another case", Object{{"className", "lumoAppLineNode"}}, false},
      {"a prefix of it", Object{{"className", "LumoAppLine"}}, false},
      {"more than it", Object{{"className", "LumoAppLineNode2"}}, false},
      {"a NUL after it", Object{{"className", std::string("LumoAppLineNode\0", 16)}}, false},
      {"empty text", Object{{"className", ""}}, false},
      {"no such member", Object{{"classname", "LumoAppLineNode"}}, false},
      {"an empty object", Object{}, false},
      {"a member that is a number", Object{{"className", 7.0}}, false},
      {"a member that is null", Object{{"className", Null()}}, false},
      {"a member that is an array", Object{{"className", Array{"LumoAppLineNode"}}}, false},
      {"text", "LumoAppLineNode", false},
      {"an array", Array{Object{{"className", "LumoAppLineNode"}}}, false},
      {"a number", 1.0, false},
      {"a bool", true, false},
      {"null", Null(), false},
      {"undefined", Undefined(), false},
      {"an integer", std::int64_t{1}, false},
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
      {"a part of the prefix", Object{{"anchorId", "M"}}, "M_", u"M_M"},
      {"the prefix in another case", Object{{"anchorId", "m_1"}}, "M_", u"M_m_1"},
      {"the prefix further on", Object{{"anchorId", "1M_"}}, "M_", u"M_1M_"},
      {"empty text", Object{{"anchorId", ""}}, "M_", u"M_"},
      {"an empty prefix", Object{{"anchorId", "1"}}, "", u"1"},
      {"an empty prefix and empty text", Object{{"anchorId", ""}}, "", u""},
      {"another prefix", Object{{"anchorId", "M_1"}}, "N-", u"N-M_1"},
      {"text beyond ASCII", Object{{"anchorId", "\u00E9\U0001F600"}}, "M_", u"M_\u00E9\U0001F600"},
      {"ill-formed text", Object{{"anchorId", "\x80"}}, "M_", u"M_\uFFFD"},
      {"no such member", Object{{"anchorid", "1"}}, "M_", u""},
      {"a number", Object{{"anchorId", 12.0}}, "M_", u""},
      {"null", Object{{"anchorId", Null()}}, "M_", u""},
      {"an object", Object{{"anchorId", Object{{"anchorId", "1"}}}}, "M_", u""},
      {"not an object", Array{"1"}, "M_", u""},
      {"text itself", "M_1", "M_", u""},
      {"undefined", Undefined(), "M_", u""},
  };
  for (const AnchorRow& row : rows) {
    SCOPED_TRACE(row.description);
    EXPECT_EQ(extract_anchor_id(row.json, row.prefix), row.anchorId);
  }
}

}  // namespace
