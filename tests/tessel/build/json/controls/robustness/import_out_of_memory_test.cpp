#include <gtest/gtest.h>

#include <cstddef>
#include <exception>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "foundation/json.hpp"
#include "gx/zero.hpp"
#include "reference_host/export/export.hpp"
#include "reference_host/importer/importer.hpp"
#include "reference_host/json/parse.hpp"
#include "reference_host/logging/log_capture.hpp"
#include "sample_builds.hpp"
#include "support/all_builders.hpp"
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
      const std::string text = reference_host::exporting::toJson(*node++);
      fates.push_back(foundation::json::pretty_print(reference_host::json::parse(text)));
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
    // A control, one with elements of its own, one that the host recognises, one that fails, and
    // one that another builder takes part in.
    const std::set<std::string> names = {"button", "combobox", "datepicker", "editfieldfailing",
                                         "taskheader"};
    Value::Array objects;
    for (const SampleBuild& sample : allSamples()) {
      if (names.count(sample.name) == 0) continue;
      objects.push_back(sample.json);
      expected_.push_back(sample.expected.error.empty()
                              ? foundation::json::pretty_print(sample.expected.roots.front())
                              : sample.expected.error);
    }
    EXPECT_EQ(expected_.size(), names.size());
    document_ = Value(std::move(objects));
  }

  const std::vector<NamedBuilder>& builders_ = test_support::allBuilders();
  Value document_;
  std::vector<Fate> expected_;
};

INSTANTIATE_TEST_SUITE_P(Diagnostics, ImportOutOfMemory, testing::Bool(),
                         [](const auto& logs) { return logs.param ? "On" : "Off"; });

TEST_P(ImportOutOfMemory, IsDoneOrLeaves) {
  std::optional<reference_host::logging::LogCapture> capture;
  if (GetParam()) capture.emplace();
  const Value before = document_;
  const auto expectAllIn = [this](const ImportResult& result) {
    EXPECT_EQ(fatesIn(result, expected_.size()), expected_);
  };
  const auto expectAll = [&] {
    const Model model = Model::create();
    expectAllIn(importDocument(builders_, model, document_));
  };
  expectAll();

  std::size_t left = 0;
  for (const Refusal refusal : {Refusal::kFromThenOn, Refusal::kOnce}) {
    sweepAllocations(refusal, [&](LimitedMemory& memory) {
      SCOPED_TRACE(memory.successes());
      const Model model = Model::create();
      std::optional<ImportResult> result;
      const std::exception_ptr thrown =
          memory.run([&] { result.emplace(importDocument(builders_, model, document_)); });
      EXPECT_EQ(result.has_value(), thrown == nullptr);
      if (result) {
        expectAllIn(*result);
        EXPECT_EQ(model.get()->getHeldElementCount(), result->nodes.size());
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
  EXPECT_GT(left, 100U);
}

}  // namespace
}  // namespace tessel::build::json::controls
