#include "framework/recognition.hpp"

#include <gmock/gmock.h>

#include <stdexcept>
#include <string>

#include "support/allocation_count.hpp"
#include "support/json.hpp"
#include "support/records.hpp"

namespace tessel::build::json::controls::framework {
namespace {

using foundation::json::Value;
using test_support::json;
using test_support::Records;
using test_support::recordsOf;

TEST(Recognition, EachRuleAnswersByItsWord) {
  constexpr const char* kNoText = "invalid conversion: double to string";
  constexpr const char* kNoType = "invalid conversion: undefined to string";
  struct Row {
    const char* json;
    const char* byClassName;
    const char* byTypeWord;
    const char* byEither;
  };
  const Row rows[] = {
      {R"({"className":"word"})", "yes", "no", "yes"},
      {R"({"className":"word","context":7})", "yes", "no", "yes"},
      {R"({"className":"LumoControlNode","context":{"type":"word"}})", "no", "yes", "yes"},
      {R"({"className":"Other","context":{"type":"word"}})", "no", "no", "no"},
      {R"({"className":"Word"})", "no", "no", "no"},
      {R"({"className":"words"})", "no", "no", "no"},
      {R"({"className":"wor"})", "no", "no", "no"},
      {R"({"className":"word\u0000"})", "no", "no", "no"},
      {R"({"className":"LumoControlNode","context":{"type":"word "}})", "no", "no", "no"},
      {R"({"className":"LumoControlNode2","context":{"type":"word"}})", "no", "no", "no"},
      {R"({"a":1,"b":1,"c":1,"className":"word","cl":1})", "yes", "no", "yes"},
      {R"({"classname":"word","type":"word","context":{"type":"word"}})", "no", "no", "no"},
      {R"({"className":7})", kNoText, kNoText, kNoText},
      {R"({"className":"LumoControlNode"})", "no", "invalid conversion: undefined to object",
       "invalid conversion: undefined to object"},
      {R"({"className":"LumoControlNode","context":[]})", "no",
       "invalid conversion: array to object", "invalid conversion: array to object"},
      {R"({"className":"LumoControlNode","context":{}})", "no", kNoType, kNoType},
      {R"({"className":"LumoControlNode","context":{"type":1}})", "no", kNoText, kNoText},
  };
  const auto answerOf = [](const auto& rule, const Value& value) -> std::string {
    try {
      return rule(value, "word") ? "yes" : "no";
    } catch (const std::runtime_error& error) {
      return error.what();
    }
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.json);
    const Value value = json(row.json);
    EXPECT_EQ(recordsOf([&] {
                EXPECT_EQ(answerOf(recognizeByClassName, value), row.byClassName);
                EXPECT_EQ(answerOf(recognizeByTypeWord, value), row.byTypeWord);
                EXPECT_EQ(answerOf(recognizeByTypeWordOrClassName, value), row.byEither);
              }),
              Records());
  }
}

TEST(Recognition, AllocatesNothingOfItsOwn) {
  // Long words, so that no text fits a small-string buffer by chance.
  const Value generic = json(
      R"({"className":"LumoControlNode","context":{"type":"aTypeWordOfMoreThanSixteenBytes"}})");
  const Value other = json(R"({"className":"ParagraphNodeOfTheDocument","children":[]})");
  const Value none = json(R"(["a","b"])");
  const auto askAll = [](const Value& value) {
    recognizeByClassName(value, "ColorPickerControlNode");
    recognizeByTypeWord(value, "slider");
    recognizeByTypeWordOrClassName(value, "button");
  };
  askAll(none);  // the logger is made when it is first asked for
  for (const Value* value : {&generic, &other, &none}) {
    EXPECT_EQ(test_support::allocationsOf([&] { askAll(*value); }), 0U);
  }
}

}  // namespace
}  // namespace tessel::build::json::controls::framework
