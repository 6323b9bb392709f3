#include "framework/json_access.hpp"

#include <gmock/gmock.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "contract/samples.hpp"
#include "foundation/json.hpp"

namespace tessel::build::json::controls::framework {
namespace {

using contract::Alternative;
using contract::alternatives;
using foundation::json::Value;

struct Read {
  const char* requested;
  std::function<void(const Value&)> read;
};

const std::vector<Read>& reads() {
  static const std::vector<Read> all = {
      {"string", [](const Value& value) { readString(value); }},
      {"double", [](const Value& value) { readDouble(value); }},
      {"bool", [](const Value& value) { readBool(value); }},
      {"object", [](const Value& value) { readObjectMembers(value); }},
      {"array", [](const Value& value) { readArray(value); }},
      {"string", [](const Value& value) { readText(value); }},
  };
  return all;
}

std::string errorOf(const Read& read, const Value& value) {
  try {
    read.read(value);
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "";
}

TEST(StrictRead, AcceptsExactlyTheRequestedAlternative) {
  for (const Read& read : reads()) {
    for (const Alternative& held : alternatives()) {
      SCOPED_TRACE(std::string(held.name) + " read as " + read.requested);
      const std::string expected =
          std::string(held.name) == read.requested
              ? ""
              : std::string("invalid conversion: ") + held.name + " to " + read.requested;
      EXPECT_EQ(errorOf(read, held.value), expected);
    }
  }
}

TEST(StrictRead, ReturnsReferencesIntoTheValue) {
  const Value text("text");
  EXPECT_EQ(&readString(text), text.get_if<std::string>());
  const Value array(Value::Array{Value(1.0)});
  EXPECT_EQ(&readArray(array), array.get_if<Value::Array>());
  const Value object(Value::Object{{"key", Value(1.0)}});
  EXPECT_EQ(&readObjectMembers(object), object.get_if<Value::Object>());
}

TEST(StrictRead, ReturnsWhatIsHeld) {
  EXPECT_EQ(readDouble(Value(-0.5)), -0.5);
  EXPECT_TRUE(readBool(Value(true)));
  EXPECT_FALSE(readBool(Value(false)));
  EXPECT_EQ(readText(Value("Größe \xF0\x9F\x8E\x9B")), u"Größe \U0001F39B");
}

TEST(RequiredMember, IsReadInPlaceWhereItIsThere) {
  const Value holder(Value::Object{{"there", Value("text")}});
  Value copy;
  EXPECT_EQ(&requiredMember(holder, "there", copy), &holder["there"]);
  EXPECT_EQ(copy, Value()) << "the holder was copied";
}

TEST(RequiredMember, IsTheHostsToAnswerForWhereItIsMissing) {
  for (const Alternative& holder : alternatives()) {
    SCOPED_TRACE(holder.name);
    const Value before = holder.value;
    Value copy;
    const bool mayHaveMembers = holder.name == "undefined" || holder.name == "object";
    const Read ask{"", [&copy](const Value& value) {
                     EXPECT_EQ(requiredMember(value, "missing", copy), Value());
                   }};
    EXPECT_EQ(errorOf(ask, holder.value),
              mayHaveMembers ? "" : "invalid conversion: " + holder.name + " to object");
    EXPECT_EQ(holder.value, before);
  }
}

}  // namespace
}  // namespace tessel::build::json::controls::framework
