#pragma once

/// @file
/// An object that a builder was asked about, and what to tell of a call that failed.

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "foundation/export.hpp"
#include "foundation/json.hpp"
#include "reference_host/diagnosis/culprit.hpp"
#include "reference_host/diagnosis/knowledge.hpp"
#include "reference_host/diagnosis/problem.hpp"
#include "reference_host/importer/importer.hpp"

namespace reference_host::diagnosis {

struct OfferedObject {
  const Knowledge& knowledge;
  const importer::NamedBuilder& builder;
  std::string pointer;  ///< JSON pointer of the object
  const foundation::json::Value& value;
  /// Words beside those of the knowledge that a builder may compare with; null for none.
  const std::vector<std::string>* words = nullptr;

  std::shared_ptr<const Kind> kind() const { return knowledge.kindOf(builder, value); }
};

/// The problem of one failed call of the builder.
/// @param culprit the one of the failure, if there is one.
/// @param message the failure's own text.
TESSEL_HOST_API Problem problemOf(const OfferedObject& object, importer::Step step,
                                  const std::optional<Culprit>& culprit,
                                  const std::string& message);

}  // namespace reference_host::diagnosis
