#pragma once

/// @file
/// Values that are stored as they are and can hardly be meant. Which they are cannot be learnt from
/// builders: this is the one place that knows what members mean.

#include <functional>
#include <string>
#include <vector>

#include "foundation/json.hpp"
#include "reference_host/diagnosis/path.hpp"

namespace reference_host::diagnosis {

/// A value that can hardly be meant, and why: "is above ...".
struct UnlikelyValue {
  Path place;
  std::string what;
  std::vector<Path> judgedBy;  ///< the other members that make it so
};

/// The unlikely values of a control.
std::vector<UnlikelyValue> unlikelyValuesOf(const foundation::json::Value& control);

/// The member by which a document's controls are told apart.
const Path& idPlace();

}  // namespace reference_host::diagnosis
