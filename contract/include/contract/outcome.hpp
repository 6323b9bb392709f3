#pragma once

/// @file
/// What a call of a builder leads to: as the contract has it, and as it is.

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "contract/kinds.hpp"
#include "document/gxzero.hpp"
#include "foundation/json.hpp"
#include "gx/zero.hpp"

namespace contract {

using Records = std::vector<std::string>;

/// Whether two values are the same bit by bit: other than for `==`, what is not a number is itself.
bool areSame(const foundation::json::Value& left, const foundation::json::Value& right);

struct Outcome {
  bool claims = false;  ///< what `canBuild` answers
  std::string error;    ///< what is thrown; empty when nothing is
  Records records;      ///< of the log
  /// The roots of the model as exported, read back. After a build the first one is the node.
  foundation::json::Value::Array roots;
  std::vector<std::string> created;  ///< the classes of all elements, in order
  /// Broken promises of every call: handles left behind, a value changed, and so on.
  std::vector<std::string> offences;

  friend bool operator==(const Outcome& left, const Outcome& right);
  friend bool operator!=(const Outcome& left, const Outcome& right) { return !(left == right); }
  friend std::ostream& operator<<(std::ostream& stream, const Outcome& outcome);
};

/// A log record, and the roots of the model at the time when it is written.
struct Step {
  std::string record;
  foundation::json::Value::Array roots;

  friend bool operator==(const Step& left, const Step& right) {
    return left.record == right.record && areSame(left.roots, right.roots);
  }
  friend std::ostream& operator<<(std::ostream& stream, const Step& step) {
    return stream << step.record << ": " << foundation::json::pretty_print(step.roots);
  }
};

/// What the contract says, of any value at all.
Outcome expectedAnswer(const Kind& kind, const foundation::json::Value& json);
Outcome expectedBuild(const Kind& kind, const foundation::json::Value& json);
/// The same build record by record: what is set before each of them, and what is not yet.
std::vector<Step> expectedSteps(const Kind& kind, const foundation::json::Value& json);

/// A builder of whichever type, which has to outlive this.
struct AnyBuilder {
  template <typename Builder>
  AnyBuilder(const Builder& builder)
      : canBuild([&builder](const auto& json) { return builder.canBuild(json); }),
        build([&builder](const auto& model, const auto& json) {
          return builder.build(model, json);
        }) {}

  std::function<bool(const foundation::json::Value&)> canBuild;
  std::function<document::gxzero::Node(const gx::zero::Model&, const foundation::json::Value&)>
      build;
};

/// What a builder does. Diagnostics are on, and the records are collected.
Outcome answerOf(const AnyBuilder& builder, const foundation::json::Value& json);
Outcome buildOf(const AnyBuilder& builder, const foundation::json::Value& json);
std::vector<Step> stepsOf(const AnyBuilder& builder, const foundation::json::Value& json);

/// The same with diagnostics as they are; there are no records.
Outcome silentAnswerOf(const AnyBuilder& builder, const foundation::json::Value& json);
Outcome silentBuildOf(const AnyBuilder& builder, const foundation::json::Value& json);

/// The roots of a model as exported, read back.
foundation::json::Value::Array rootsOf(const gx::zero::Model& model);

}  // namespace contract
