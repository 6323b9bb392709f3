#pragma once

/// @file
/// What the contract says of one value: what a builder answers, and what its build leaves behind.

#include <string>
#include <vector>

#include "foundation/json.hpp"
#include "fuzz/contract.hpp"

namespace fuzz {

/// What calls of a builder lead to.
struct Outcome {
  bool claims = false;               ///< what `canBuild` answers
  std::string error;                 ///< what is thrown; empty when nothing is
  std::vector<std::string> records;  ///< of the diagnostics
  /// The roots of the model as exported, read back from the exported text.
  foundation::json::Value::Array roots;
};

Outcome expectedAnswer(const Kind& kind, const foundation::json::Value& json);
Outcome expectedBuild(const Kind& kind, const foundation::json::Value& json);

}  // namespace fuzz
