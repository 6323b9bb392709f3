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

using contract::alternatives;
using contract::Sample;
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
    for (const Sample& held : alternatives()) {
      SCOPED_TRACE(std::string(held.description) + " read as " + read.requested);
      const std::string expected =
          std::string(held.description) == read.requested
              ? ""
              : std::string("invalid conversion: ") + held.description + " to " + read.requested;
      EXPECT_EQ(errorOf(read, held.json), expected);
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

TEST(RequiredMember, IsReadInPlaceWhereItIsThere) {
  const Value holder(Value::Object{{"there", Value("text")}});
  Value copy;
  EXPECT_EQ(&requiredMember(holder, "there", copy), &holder["there"]);
  EXPECT_EQ(copy, Value()) << "the holder was copied";
}

TEST(RequiredMember, IsTheHostsToAnswerForWhereItIsMissing) {
  for (const Sample& holder : alternatives()) {
    SCOPED_TRACE(holder.description);
    const Value before = holder.json;
    Value copy;
    const bool mayHaveMembers = holder.description == "undefined" || holder.description == "object";
    const Read ask{"", [&copy](const Value& value) {
                     EXPECT_EQ(requiredMember(value, "missing", copy), Value());
                   }};
    EXPECT_EQ(errorOf(ask, holder.json),
              mayHaveMembers ? "" : "invalid conversion: " + holder.description + " to object");
    EXPECT_EQ(holder.json, before);
  }
}

}  // namespace
}  // namespace tessel::build::json::controls::framework
