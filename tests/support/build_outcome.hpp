#pragma once

/// @file
/// Runs a build and gathers everything that can be seen of it from outside.

#include <gtest/gtest.h>

#include <exception>
#include <ostream>
#include <string>

#include "document/gxzero.hpp"
#include "foundation/json.hpp"
#include "gx/zero.hpp"
#include "reference_host/export/export.hpp"
#include "support/records.hpp"

namespace test_support {

/// What a build left behind. Elements are compact JSON.
struct Outcome {
  std::string node;   ///< the returned node; empty when the build failed
  std::string error;  ///< what the build threw; empty when it succeeded
  std::string roots;  ///< the roots of the model after the build, a JSON array
  Records records;

  friend bool operator==(const Outcome& left, const Outcome& right) {
    return left.node == right.node && left.error == right.error && left.roots == right.roots &&
           left.records == right.records;
  }

  friend std::ostream& operator<<(std::ostream& stream, const Outcome& outcome) {
    stream << "\n  node:  " << outcome.node << "\n  error: " << outcome.error
           << "\n  roots: " << outcome.roots << "\n  records:";
    for (const std::string& record : outcome.records) stream << "\n    " << record;
    return stream;
  }
};

inline std::string exportedRoots(const gx::zero::Model& model) {
  std::string roots;
  for (const gx::zero::ModelElement& root : model.get()->getRoots()) {
    roots += (roots.empty() ? "" : ",") + reference_host::exporting::toJson(root);
  }
  return "[" + roots + "]";
}

/// Builds in a fresh model, and holds the build to what every build owes: one reference on the
/// result, no handle left behind, the value unchanged, and every element asked for with the nil
/// uuid.
template <typename Builder>
Outcome buildWith(const Builder& builder, const foundation::json::Value& json) {
  const gx::zero::Model model = gx::zero::Model::create();
  const foundation::json::Value before = json;
  Outcome outcome;
  outcome.records = recordsOf([&] {
    try {
      const document::gxzero::Node node = builder.build(model, json);
      EXPECT_TRUE(node);
      EXPECT_EQ(node.get()->getHandleCount(), 1U);
      EXPECT_EQ(model.get()->getHeldElementCount(), 1U);
      outcome.node = reference_host::exporting::toJson(node);
    } catch (const std::exception& error) {
      outcome.error = error.what();
    }
  });
  EXPECT_EQ(model.get()->getHeldElementCount(), 0U);
  EXPECT_EQ(json, before);
  for (const auto& element : model.get()->getElements()) {
    EXPECT_TRUE(element->getRequestedUuid().is_nil());
  }
  outcome.roots = exportedRoots(model);
  return outcome;
}

}  // namespace test_support
