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

TEST(Explanation, AsksEveryBuilderAndTheFirstThatClaimsBuilds) {
  const std::vector<NamedBuilder> builders = {
      named("n::A", Answer::kThrow), named("n::B", Answer::kYes), named("n::C", Answer::kNo),
      named("n::D", Answer::kYes, Build::kThrowAfterOne)};
  const Value value = test_support::json("{}");
  const Explanation explanation = explain(builders, value);
  EXPECT_EQ(answersOf(explanation),
            R"({"builders":[)"
            R"({"builder":"n::A","canBuild":null,"error":"no idea",)"
            R"("log":[]},)"
            R"({"builder":"n::B","canBuild":true,"error":null,)"
            R"("log":[]},)"
            R"({"builder":"n::C","canBuild":false,"error":null,)"
            R"("log":[]},)"
            R"({"builder":"n::D","canBuild":true,"error":null,)"
            R"("log":[]}],)"
            R"("claimedBy":"n::B",)"
            R"("build":{"node":{"class":"document::gxzero::ButtonNode"},"error":null,"log":[],)"
            R"("model":[{"class":"document::gxzero::ButtonNode"}]}})"
            "\n");
  EXPECT_EQ(textOf(explanation, value),
            "the value is an object, no \"className\", no \"context\"\n"
            "can they build it?\n"
            "  A: error, no idea\n"
            "  B: yes\n"
            "  C: no\n"
            "  D: yes\n"
            "build by B\n"
            "  returned\n"
            "    ButtonNode (nothing set)\n"
            "the model holds this node and nothing else\n");
}

TEST(Explanation, CountsTheBuildersThatSayNo) {
  const NamedBuilder yes = named("Y", Answer::kYes, Build::kNothing);
  const NamedBuilder no = named("N", Answer::kNo);
  const NamedBuilder thrower = named("T", Answer::kThrow);
  const std::string claimed = "build by Y\n  returned no node\nthe model is empty\n";
  const std::string unclaimed = "nobody builds it\n";
  const struct {
    std::vector<NamedBuilder> builders;
    std::string text;  // after the question
  } rows[] = {
      {{no, no}, "  all 2: no\n" + unclaimed},
      {{no, thrower, yes, no}, "  T: error, no idea\n  Y: yes\n  2 others: no\n" + claimed},
      {{no, yes}, "  Y: yes\n  1 other: no\n" + claimed},
      {{thrower}, "  T: error, no idea\n" + unclaimed},
  };
  const Value value = test_support::json("1");
  for (const auto& row : rows) {
    EXPECT_EQ(textOf(explain(row.builders, value), value, Answers::kNotable),
              "the value is a number\ncan they build it?\n" + row.text);
  }
}

struct OutcomeRow {
  const char* description;
  Build build;
  const char* json;  // after "build":
  const char* text;  // after the builder's line
};

const OutcomeRow kOutcomes[] = {
    {"a failed build leaves what it created", Build::kThrowAfterOne,
     R"({"node":null,"error":"broken","log":[],)"
     R"("model":[{"class":"document::gxzero::ButtonNode"}]}})",
     "  failed: broken\n"
     "the model holds\n"
     "    ButtonNode (nothing set)\n"},
    {"a root beside the node shows", Build::kTwo,
     R"({"node":{"class":"document::gxzero::ButtonNode"},"error":null,"log":[],)"
     R"("model":[{"class":"document::gxzero::ButtonNode"},)"
     R"({"class":"document::gxzero::ButtonNode"}]}})",
     "  returned\n"
     "    ButtonNode (nothing set)\n"
     "the model holds\n"
     "    ButtonNode (nothing set)\n"
     "    ButtonNode (nothing set)\n"},
    {"no node", Build::kNothing, R"({"node":null,"error":null,"log":[],"model":[]}})",
     "  returned no node\n"
     "the model is empty\n"},
};

TEST(Explanation, ShowsHowTheBuildEnded) {
  for (const OutcomeRow& row : kOutcomes) {
    SCOPED_TRACE(row.description);
    const Value value = test_support::json(R"({"className":7,"context":{"type":"a"}})");
    const Explanation explanation = explain({named("B", Answer::kYes, row.build)}, value);
    EXPECT_EQ(answersOf(explanation),
              std::string(R"({"builders":[{"builder":"B","canBuild":true,"error":null,)"
                          R"("log":[]}],"claimedBy":"B","build":)") +
                  row.json + "\n");
    EXPECT_EQ(textOf(explanation, value),
              std::string("the value is an object, \"className\" is a number, in \"context\" "
                          "\"type\": \"a\"\n"
                          "can they build it?\n"
                          "  B: yes\n"
                          "build by B\n") +
                  row.text);
  }
}

TEST(Explanation, TellsWhereItsErrorsAre) {
  Document document;
  document.path = "file.json";
  document.line = 3;
  document.text = R"([{"className": 7}])";
  const Value root = document.parse();
  const std::vector<NamedBuilder> builders = {named("T", Answer::kThrow), named("N", Answer::kNo)};
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
