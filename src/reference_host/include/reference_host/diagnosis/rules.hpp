#pragma once

/// @file
/// Which values a builder builds, as rules for the places in them. They are learnt by trying.

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "foundation/export.hpp"
#include "foundation/json.hpp"
#include "reference_host/diagnosis/knowledge.hpp"

namespace reference_host::diagnosis {

/// What can stand at a place, as far as builders tell values apart.
struct State {
  std::string type;  ///< the name of a type; `undefined` where nothing stands
  std::string word;  ///< a text that may count for itself; empty for all other texts

  friend bool operator<(const State& left, const State& right) {
    return std::tie(left.type, left.word) < std::tie(right.type, right.word);
  }
  friend bool operator==(const State& left, const State& right) {
    return left.type == right.type && left.word == right.word;
  }
};
using States = std::set<State>;

/// Every state of a place: nothing, each type, and, where texts say what an object is, the words.
TESSEL_HOST_API States statesOf(std::string_view pattern, const std::vector<std::string>& words);

/// States of one place, by its pattern.
struct Condition {
  std::string place;
  States states;

  friend bool operator==(const Condition& left, const Condition& right) {
    return left.place == right.place && left.states == right.states;
  }
};

/// What a place may hold where all conditions are met.
struct Rule {
  std::vector<Condition> conditions;
  States allowed;

  friend bool operator==(const Rule& left, const Rule& right) {
    return left.conditions == right.conditions && left.allowed == right.allowed;
  }
};

/// By the places' patterns. An object of the kind is built when it meets all of them; a rule says
/// nothing where what should hold the place is no object, or no array.
using Rules = std::map<std::string, std::vector<Rule>>;

/// The rules of the objects that a builder recognises by the same words.
///
/// What a builder makes of a value can depend only on what it has read before. So for each place it
/// is tried which of the earlier ones matter, and then what the place may hold with every
/// combination of their states. Elements of an array are taken to be treated alike, and not to
/// matter for what is outside of them.
TESSEL_HOST_API Rules learnRules(const Knowledge& knowledge, const Recognition& recognition);

/// What an import does with an object: builds it, tells an error, or looks at its members.
struct Fate {
  enum class Kind { kWalked, kError, kClaimed };
  Kind kind = Kind::kWalked;
  const Recognition* recognition = nullptr;  ///< of a claimed object

  friend bool operator==(const Fate& left, const Fate& right) {
    return left.kind == right.kind && left.recognition == right.recognition;
  }
};

/// What happens to objects with one state of "className".
struct TESSEL_HOST_API ClassFate {
  State className;
  /// By the states of "context" and of "type" in it. The latter is `undefined` where the context is
  /// no object.
  std::vector<std::pair<std::pair<State, State>, Fate>> fates;

  /// Whether all fates are the same one.
  bool isOne() const;
};

/// For every state of "className".
TESSEL_HOST_API std::vector<ClassFate> learnFates(const Knowledge& knowledge);

}  // namespace reference_host::diagnosis
