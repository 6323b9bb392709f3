#include "explanation.hpp"

#include <gtest/gtest.h>

#include <boost/uuid/nil_generator.hpp>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "support/json.hpp"
#include "tessel/build/json/builders.hpp"

namespace tessel_tool {
namespace {

using document::gxzero::ButtonNode;
using document::gxzero::Node;
using foundation::json::Value;
using gx::zero::Model;
using reference_host::importer::NamedBuilder;

enum class Answer { kYes, kNo, kThrow };
enum class Build { kOne, kTwo, kThrowAfterOne, kNothing };

class FakeBuilder final : public tessel::build::json::NodeBuilder {
 public:
  explicit FakeBuilder(Answer answer, Build build = Build::kOne) : answer_(answer), build_(build) {}

  bool canBuild(const Value&) const override {
    if (answer_ == Answer::kThrow) throw std::runtime_error("no idea");
    return answer_ == Answer::kYes;
  }

  Node build(const Model& model, const Value&) const override {
    if (build_ == Build::kNothing) return Node();
    ButtonNode node = create(model);
    if (build_ == Build::kThrowAfterOne) throw std::runtime_error("broken");
    if (build_ == Build::kTwo) create(model);
    return node;
  }

 private:
  static ButtonNode create(const Model& model) {
    return ButtonNode::Builder(model).createButtonNode(boost::uuids::nil_uuid());
  }

  Answer answer_;
  Build build_;
};

template <typename... Arguments>
NamedBuilder named(std::string name, Arguments... arguments) {
  return NamedBuilder(std::move(name), std::make_shared<FakeBuilder>(arguments...));
}

/// As JSON, without the locations of errors, of which nothing is known here.
std::string answersOf(const Explanation& explanation) {
  constexpr std::string_view kNowhere =
      R"("member":null,"line":null,"column":null,"held":null,"wanted":null,)";
  std::string out;
  appendAsJson(out, explanation, true);
  for (std::size_t place = 0; (place = out.find(kNowhere)) != std::string::npos;) {
    out.erase(place, kNowhere.size());
  }
  return out;
}

std::string textOf(const Explanation& explanation, const Value& value,
                   Answers answers = Answers::kAll) {
  std::string out;
  appendAsText(out, explanation, value, answers);
  return out;
}

constexpr const char* kButton = R"({"class":"document::gxzero::ButtonNode"})";

TEST(Explanation, ShowsHowTheBuildEnded) {
  const std::string button = kButton;
  const std::string shown = "    ButtonNode (nothing set)\n";
  const struct {
    const char* description;
    Build build;
    std::string json;  // after "build":
    std::string text;  // after the builder's line
  } rows[] = {
      {"one node", Build::kOne,
       R"({"node":)" + button + R"(,"error":null,"log":[],"model":[)" + button + "]}}",
       "  returned\n" + shown + "the model holds this node and nothing else\n"},
      {"a failed build leaves what it created", Build::kThrowAfterOne,
       R"({"node":null,"error":"broken","log":[],"model":[)" + button + "]}}",
       "  failed: broken\nthe model holds\n" + shown},
      {"a root beside the node shows", Build::kTwo,
       R"({"node":)" + button + R"(,"error":null,"log":[],"model":[)" + button + ',' + button +
           "]}}",
       "  returned\n" + shown + "the model holds\n" + shown + shown},
      {"no node", Build::kNothing, R"({"node":null,"error":null,"log":[],"model":[]}})",
       "  returned no node\nthe model is empty\n"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.description);
    const Value value = test_support::json("1");
    const Explanation explanation = explain({named("n::B", Answer::kYes, row.build)}, value);
    EXPECT_EQ(answersOf(explanation),
              R"({"builders":[{"builder":"n::B","canBuild":true,"error":null,"log":[]}],)"
              R"("claimedBy":"n::B","build":)" +
                  row.json + '\n');
    EXPECT_EQ(textOf(explanation, value),
              "the value is a number\ncan they build it?\n  B: yes\nbuild by B\n" + row.text);
  }
}

TEST(Explanation, AsksEveryBuilderAndTheFirstThatClaimsBuilds) {
  const NamedBuilder yes = named("Y", Answer::kYes, Build::kNothing);
  const NamedBuilder late = named("L", Answer::kYes, Build::kThrowAfterOne);
  const NamedBuilder no = named("N", Answer::kNo);
  const NamedBuilder thrower = named("T", Answer::kThrow);
  const std::string claimed = "build by Y\n  returned no node\nthe model is empty\n";
  const std::string unclaimed = "nobody builds it\n";
  const struct {
    std::vector<NamedBuilder> builders;
    std::string all;      // after the question
    std::string notable;  // the same, where those that say no are counted
  } rows[] = {
      {{no, no}, "  N: no\n  N: no\n" + unclaimed, "  all 2: no\n" + unclaimed},
      {{no, thrower, yes, no, late},
       "  N: no\n  T: error, no idea\n  Y: yes\n  N: no\n  L: yes\n" + claimed,
       "  T: error, no idea\n  Y: yes\n  L: yes\n  2 others: no\n" + claimed},
      {{no, yes}, "  N: no\n  Y: yes\n" + claimed, "  Y: yes\n  1 other: no\n" + claimed},
      {{thrower}, "  T: error, no idea\n" + unclaimed, "  T: error, no idea\n" + unclaimed},
  };
  const Value value = test_support::json("1");
  const std::string question = "the value is a number\ncan they build it?\n";
  for (const auto& row : rows) {
    const Explanation explanation = explain(row.builders, value);
    EXPECT_EQ(textOf(explanation, value), question + row.all);
    EXPECT_EQ(textOf(explanation, value, Answers::kNotable), question + row.notable);
  }
  EXPECT_EQ(answersOf(explain({thrower, no}, value)),
            R"({"builders":[{"builder":"T","canBuild":null,"error":"no idea","log":[]},)"
            R"({"builder":"N","canBuild":false,"error":null,"log":[]}],"claimedBy":null})"
            "\n");
}

TEST(Explanation, TellsWhereItsErrorsAre) {
  Document document;
  document.path = "file.json";
  document.line = 3;
  document.text = R"([{"className": 7}])";
  const Value root = document.parse();
  const std::vector<NamedBuilder> builders = {named("T", Answer::kThrow), named("Y", Answer::kYes)};
  const reference_host::diagnosis::Knowledge knowledge(builders, {});
  const Value& value = root.get_if<Value::Array>()->front();
  Explanation explanation = explain(builders, value);
  locateErrors(explanation, knowledge, value, "/0", document);
  const Location& location = explanation.answers.front().location;
  EXPECT_EQ(location.member, std::nullopt);
  EXPECT_EQ(location.place, (reference_host::json::TextPlace{3, 2}));
  EXPECT_EQ(explanation.answers.back().location.place, std::nullopt);
  EXPECT_EQ(explanation.told,
            "file.json:3:2: error: object: no idea [cannot-tell]\n"
            "    3 | [{\"className\": 7}]\n"
            "      |  ^~~~~~~~~~~~~~~~\n");
}

TEST(Explanation, NamesTheKindOfValue) {
  const struct {
    const char* json;
    const char* description;
  } rows[] = {
      {"null", "null"},
      {"true", "a boolean"},
      {"1", "a number"},
      {R"("x")", "a text"},
      {"[]", "an array"},
      {R"({"className":"x"})", R"(an object, "className": "x", no "context")"},
      {R"({"className":null,"context":[]})",
       R"(an object, "className" is null, "context" is an array)"},
      {R"({"className":{},"context":{}})",
       R"(an object, "className" is an object, in "context" no "type")"},
      {R"({"className":"x","context":{"type":true}})",
       R"(an object, "className": "x", in "context" "type" is a boolean)"},
  };
  for (const auto& row : rows) {
    const Value value = test_support::json(row.json);
    EXPECT_EQ(textOf(explain({named("B", Answer::kNo)}, value), value),
              "the value is " + std::string(row.description) +
                  "\ncan they build it?\n  B: no\nnobody builds it\n");
  }
}

}  // namespace
}  // namespace tessel_tool
