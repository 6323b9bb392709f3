#include <gtest/gtest.h>

#include <cstddef>
#include <exception>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "foundation/json.hpp"
#include "gx/zero.hpp"
#include "reference_host/export/export.hpp"
#include "reference_host/importer/importer.hpp"
#include "reference_host/logging/log_capture.hpp"
#include "sample_builds.hpp"
#include "support/allocation_count.hpp"

namespace tessel::build::json::controls {
namespace {

using foundation::json::Value;
using gx::zero::Model;
using reference_host::importer::importDocument;
using reference_host::importer::ImportError;
using reference_host::importer::ImportResult;
using reference_host::importer::NamedBuilder;
using test_support::LimitedMemory;
using test_support::Refusal;
using test_support::sweepAllocations;

/// What came of one of the samples in a document: a node or an error's message.
using Fate = std::string;

/// The fates of a document's objects in document order, as far as they are told.
std::vector<Fate> fatesIn(const ImportResult& result, std::size_t objects) {
  std::vector<Fate> fates;
  auto node = result.nodes.begin();
  for (std::size_t index = 0; index < objects; ++index) {
    const std::string pointer = "/" + std::to_string(index);
    const ImportError* failure = nullptr;
    for (const ImportError& error : result.errors) {
      if (error.pointer == pointer) failure = &error;
    }
    if (failure != nullptr) {
      fates.push_back(failure->message);
    } else if (node != result.nodes.end()) {
      fates.push_back(reference_host::exporting::toJson(*node++));
    } else {
      ADD_FAILURE() << "nothing became of " << pointer;
    }
  }
  EXPECT_EQ(node, result.nodes.end());
  return fates;
}

class ImportOutOfMemory : public testing::TestWithParam<bool> {
 protected:
  ImportOutOfMemory() {
    Value::Array objects;
    for (const SampleBuild& sample : successfulSamples()) {
      // One builder a kind.
      if (sample.name != "EditFieldWithNumber") builders_.push_back(sample.builder);
    }
    for (const SampleBuild& sample : allSamples()) {
      if (sample.name != "Button" && sample.name != "ComboBox" && sample.name != "DatePicker" &&
          sample.name != "EditFieldFailing" && sample.name != "TaskHeader") {
        continue;
      }
      objects.push_back(sample.json);
      expected_.push_back(sample.expected.error.empty() ? sample.expected.node
                                                        : sample.expected.error);
    }
    document_ = Value(std::move(objects));
  }

  std::vector<NamedBuilder> builders_;
  Value document_;
  std::vector<Fate> expected_;
};

INSTANTIATE_TEST_SUITE_P(Diagnostics, ImportOutOfMemory, testing::Bool(),
                         [](const auto& logs) { return logs.param ? "On" : "Off"; });

TEST_P(ImportOutOfMemory, ReportsWhatFailedOrLeaves) {
  ASSERT_EQ(builders_.size(), 13U);
  ASSERT_EQ(expected_.size(), 5U);
  std::optional<reference_host::logging::LogCapture> capture;
  if (GetParam()) capture.emplace();
  const Value before = document_;
  const auto expectAll = [this] {
    const Model model = Model::create();
    const ImportResult result = importDocument(builders_, model, document_);
    EXPECT_EQ(fatesIn(result, expected_.size()), expected_);
  };
  expectAll();

  const std::string outOfMemory = std::bad_alloc().what();
  std::size_t left = 0;
  std::size_t reported = 0;
  for (const Refusal refusal : {Refusal::kFromThenOn, Refusal::kOnce}) {
    sweepAllocations(refusal, [&](LimitedMemory& memory) {
      SCOPED_TRACE(memory.successes());
      const Model model = Model::create();
      std::optional<ImportResult> result;
      const std::exception_ptr thrown =
          memory.run([&] { result.emplace(importDocument(builders_, model, document_)); });
      EXPECT_EQ(result.has_value(), thrown == nullptr);
      if (result) {
        const std::vector<Fate> fates = fatesIn(*result, expected_.size());
        ASSERT_EQ(fates.size(), expected_.size());
        std::size_t failed = 0;
        for (std::size_t index = 0; index < fates.size(); ++index) {
          if (fates[index] == expected_[index]) continue;
          EXPECT_EQ(fates[index], outOfMemory);
          ++failed;
        }
        if (refusal == Refusal::kOnce) {
          EXPECT_LE(failed, 1U);
        }
        EXPECT_EQ(result->nodes.size() + result->errors.size(), expected_.size());
        EXPECT_EQ(result->summary.objects, expected_.size());
        EXPECT_EQ(result->summary.built, result->nodes.size());
        EXPECT_EQ(result->summary.failed, result->errors.size());
        EXPECT_EQ(model.get()->getHeldElementCount(), result->nodes.size());
        reported += failed;
      } else {
        EXPECT_TRUE(test_support::isOutOfMemory(thrown));
        ++left;
      }
      result.reset();
      EXPECT_EQ(model.get()->getHeldElementCount(), 0U);
      EXPECT_EQ(document_, before);
      expectAll();
      if (capture) capture->takeTexts();
    });
  }
  // Both ways out were taken.
  EXPECT_GT(left, 0U);
  EXPECT_GT(reported, 0U);
}

}  // namespace
}  // namespace tessel::build::json::controls
