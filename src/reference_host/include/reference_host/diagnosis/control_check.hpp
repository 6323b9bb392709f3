#pragma once

/// @file
/// All problems of one object that a builder claims.

#include <string>
#include <vector>

#include "foundation/export.hpp"
#include "foundation/json.hpp"
#include "reference_host/diagnosis/culprit.hpp"
#include "reference_host/diagnosis/knowledge.hpp"
#include "reference_host/diagnosis/problem.hpp"
#include "reference_host/importer/importer.hpp"

namespace reference_host::diagnosis {

/// The problems of an object that the builder claims: errors, and then warnings of what it does not
/// read. It goes on behind a wrong member as if that were right.
std::vector<Problem> checkControl(const Knowledge& knowledge, const importer::NamedBuilder& builder,
                                  const std::string& pointer,
                                  const foundation::json::Value& object);

/// The problem of one failed call of a builder, as `checkControl` tells the first one.
/// @param culprit the one of the failure, if there is one.
/// @param message the failure's own text.
TESSEL_HOST_API Problem problemOf(const Knowledge& knowledge, const importer::NamedBuilder& builder,
                                  importer::Step step, const std::string& pointer,
                                  const foundation::json::Value& object,
                                  const std::optional<Culprit>& culprit,
                                  const std::string& message);

}  // namespace reference_host::diagnosis
