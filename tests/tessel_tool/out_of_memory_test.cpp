#include <gmock/gmock.h>

#include <boost/uuid/nil_generator.hpp>
#include <cstddef>
#include <exception>
#include <filesystem>
#include <fstream>
#include <ios>
#include <memory>
#include <new>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "console.hpp"
#include "explanation.hpp"
#include "import_answer.hpp"
#include "input.hpp"
#include "stop.hpp"
#include "support/allocation_count.hpp"
#include "support/json.hpp"
#include "support/temporary_folder.hpp"
#include "tessel/build/json/builders.hpp"

/// What the tool owes when memory runs out: the document is named, and the next one is looked at.
namespace tessel_tool {
namespace {

using document::gxzero::ButtonNode;
using document::gxzero::Node;
using foundation::json::Value;
using gx::zero::Model;
using reference_host::diagnosis::Knowledge;
using reference_host::importer::NamedBuilder;
using reference_host::importer::OnError;
using test_support::LimitedMemory;
using test_support::Refusal;
using test_support::sweepAllocations;

/// Builds a button of every object that has a text; throws `std::bad_alloc` where told to.
class TextBuilder final : public tessel::build::json::NodeBuilder {
 public:
  enum class RunsOut { kNever, kAsked, kBuilding };
  explicit TextBuilder(RunsOut runsOut = RunsOut::kNever) : runsOut_(runsOut) {}

  bool canBuild(const Value& json) const override {
    if (runsOut_ == RunsOut::kAsked) throw std::bad_alloc();
    return json.hasOwnProperty("text");
  }
  Node build(const Model& model, const Value&) const override {
    if (runsOut_ == RunsOut::kBuilding) throw std::bad_alloc();
    return ButtonNode::Builder(model).createButtonNode(boost::uuids::nil_uuid());
  }

 private:
  RunsOut runsOut_;
};

std::vector<NamedBuilder> textBuilder(TextBuilder::RunsOut runsOut = TextBuilder::RunsOut::kNever) {
  return {NamedBuilder("a builder", std::make_shared<TextBuilder>(runsOut))};
}

const char* const kName = "a name that is too long for any short string buffer.json";

Document documentOf(std::string text) {
  Document document;
  document.path = document.name = kName;
  document.text = std::move(text);
  return document;
}

std::string asJson(const ImportAnswer& answer) {
  std::string out;
  reference_host::exporting::Exporter exporter;
  appendAsJson(out, answer, true, exporter, [] {});
  return out;
}

TEST(OutOfMemory, ADocumentIsImportedOrHasFailed) {
  const auto builders = textBuilder();
  const Knowledge knowledge(builders, {});
  for (const std::string text : {R"([{"text": 1}, {"more": [{"text": "a"}]}])", "[1, 2,"}) {
    for (const bool withLog : {false, true}) {
      SCOPED_TRACE(text + (withLog ? " with log" : ""));
      Document usual = documentOf(text);
      const std::string whole =
          asJson(importOne(knowledge, usual, OnError::kContinue, withLog, Tell::kPeople));
      std::set<std::string> failedSteps;
      const std::size_t rounds = sweepAllocations(Refusal::kFromThenOn, [&](LimitedMemory& memory) {
        SCOPED_TRACE(memory.successes());
        Document document = documentOf(text);
        std::optional<ImportAnswer> answer;
        EXPECT_FALSE(memory.run([&] {
          answer = importOne(knowledge, document, OnError::kContinue, withLog, Tell::kPeople);
        }));
        ASSERT_TRUE(answer);
        EXPECT_EQ(answer->path, kName);
        if (answer->failure != kOutOfMemory) {
          EXPECT_EQ(asJson(*answer), whole);
          return;
        }
        failedSteps.insert(answer->failedStep);
        EXPECT_EQ(asJson(*answer),
                  R"({"document":")" + std::string(kName) +
                      R"(","nodes":[],"errors":[{"pointer":"","builder":null,"step":")" +
                      answer->failedStep +
                      R"(","message":"out of memory","member":null,"line":null,"column":null,)"
                      R"("held":null,"wanted":null}],"summary":)" +
                      R"({"objects":0,"claimed":0,"built":0,"failed":0})" +
                      (withLog ? R"(,"log":[]})" : "}") + '\n');
      });
      EXPECT_GT(rounds, 5U);
      EXPECT_EQ(failedSteps.count("parse"), 1U);
      EXPECT_EQ(failedSteps.count("build"), text.back() == ']' ? 1U : 0U);
    }
  }
}

TEST(OutOfMemory, ABuilderThatRunsOutOfItIsNotToBlame) {
  using RunsOut = TextBuilder::RunsOut;
  const Value value = test_support::json(R"({"text": 1})");
  for (const RunsOut runsOut : {RunsOut::kAsked, RunsOut::kBuilding}) {
    const auto builders = textBuilder(runsOut);
    const Knowledge knowledge(builders, {});
    Document document = documentOf(R"({"text": 1})");
    const ImportAnswer answer =
        importOne(knowledge, document, OnError::kContinue, false, Tell::kPeople);
    EXPECT_EQ(answer.failure, kOutOfMemory);
    EXPECT_STREQ(answer.failedStep, "build");
    EXPECT_THROW(explain(builders, value), std::bad_alloc);
  }
}

class InputOutOfMemory : public testing::Test {
 protected:
  std::string file(const std::string& content) const {
    const std::filesystem::path path = folder_.path() / "input.txt";
    std::ofstream(path, std::ios::binary) << content;
    return path.string();
  }

 private:
  test_support::TemporaryFolder folder_;
};

TEST_F(InputOutOfMemory, AnInputFailsAndTheNextIsRead) {
  const std::string path = file(std::string(200'000, ' '));
  std::size_t named = 0;
  sweepAllocations(Refusal::kOnce, [&](LimitedMemory& memory) {
    SCOPED_TRACE(memory.successes());
    DocumentSource source({path, path}, DocumentSource::Unit::kWholeInput);
    std::optional<Document> first;
    const std::exception_ptr thrown = memory.run([&] { first = source.next(); });
    // Without memory for its name nothing can be said about it.
    ASSERT_NE(first.has_value(), test_support::isOutOfMemory(thrown));
    if (first && memory.ranOut() && !first->readError.empty()) {
      ++named;
      EXPECT_EQ(first->name, path);
      EXPECT_EQ(first->readError, kOutOfMemory);
      const std::optional<Document> second = source.next();
      ASSERT_TRUE(second);
      EXPECT_EQ(second->readError, "");
      EXPECT_EQ(second->text.size(), 200'000U);
    }
  });
  EXPECT_GT(named, 2U);
}

TEST_F(InputOutOfMemory, ALineFailsAndNoneIsLost) {
  const std::string longLine(150'000, '7');
  const std::vector<std::string> lines = {"1", longLine, "3", std::string(100, '4'), "5", longLine};
  std::string content;
  for (const std::string& line : lines) content += line + '\n';
  const std::string path = file(content);
  std::set<std::size_t> failed;
  sweepAllocations(Refusal::kOnce, [&](LimitedMemory& memory) {
    SCOPED_TRACE(memory.successes());
    DocumentSource source({path}, DocumentSource::Unit::kLine);
    std::vector<Document> documents;
    documents.reserve(lines.size());
    const std::exception_ptr thrown = memory.run([&] {
      while (auto batch = source.nextBatch()) {
        for (Document& document : *batch) documents.push_back(std::move(document));
      }
    });
    if (thrown) {
      EXPECT_TRUE(test_support::isOutOfMemory(thrown));
      return;
    }
    if (documents.size() == 1 && documents[0].name == path) return;  // it could not be opened
    std::size_t failures = 0;
    std::size_t number = 0;
    for (const Document& document : documents) {
      ++number;
      EXPECT_EQ(document.name, path + ":" + std::to_string(number));
      EXPECT_EQ(document.line, number);
      if (document.readError.empty()) {
        EXPECT_TRUE(document.text == lines[number - 1]);
        continue;
      }
      EXPECT_EQ(document.readError, kOutOfMemory);
      failed.insert(number);
      ++failures;
    }
    EXPECT_LE(failures, 1U);
    // Without a buffer nothing can be read.
    if (documents.size() != 1 || failures != 1) {
      EXPECT_EQ(number, lines.size());
    }
  });
  EXPECT_THAT(failed, testing::ElementsAre(1, 2, 4, 6));
}

TEST(OutOfMemory, AComplaintIsMadeWithoutMemory) {
  testing::internal::CaptureStderr();
  LimitedMemory memory(0, Refusal::kFromThenOn);
  memory.run([] { complain(kName, "out of\nmemory"); });
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "tessel: " + std::string(kName) + ": out of?memory\n");
  EXPECT_TRUE(memory.ranOut());
}

TEST(OutOfMemory, ACutAnswerIsToldOfWithoutMemory) {
  AnswerInProgress(kName, kName).complete(1, kName);
  testing::internal::CaptureStderr();
  LimitedMemory memory(0, Refusal::kFromThenOn);
  memory.run([] {
    AnswerInProgress(kName, kName).complete(2, kName);
    const AnswerInProgress cut(kName, kName);
  });
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "tessel: an answer is cut off\n");
  EXPECT_TRUE(memory.ranOut());
}

}  // namespace
}  // namespace tessel_tool
