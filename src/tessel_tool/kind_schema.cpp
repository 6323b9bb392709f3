#include "kind_schema.hpp"

#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "member_prose.hpp"
#include "reference_host/diagnosis/rules.hpp"
#include "reference_host/diagnosis/wording.hpp"
#include "reference_host/json/text_writer.hpp"
#include "schema_terms.hpp"

namespace tessel_tool {

using foundation::json::traits;
using foundation::json::Value;
using reference_host::diagnosis::Condition;
using reference_host::diagnosis::Kind;
using reference_host::diagnosis::Knowledge;
using reference_host::diagnosis::Recognition;
using reference_host::diagnosis::Rule;
using reference_host::diagnosis::Rules;
using reference_host::diagnosis::State;
using reference_host::diagnosis::States;

namespace {

const State kAnObject{traits<Value::Object>::name, {}};

std::string capitalised(std::string text) {
  if (!text.empty() && text.front() >= 'a' && text.front() <= 'z') {
    text.front() = static_cast<char>(text.front() - 'a' + 'A');
  }
  return text;
}

/// Writes the schema of one kind of object.
class KindSchema {
 public:
  KindSchema(const Knowledge& knowledge, const Recognition& recognition, Strictness strictness)
      : words_(knowledge.words()),
        recognition_(recognition),
        kind_(knowledge.kindOf(*recognition.builder, recognition.sample())),
        rules_(learnRules(knowledge, recognition)),
        strictness_(strictness),
        name_(reference_host::diagnosis::nameOfObject(knowledge, recognition.builder,
                                                      recognition.sample())) {}

  Value write() {
    at(schema_, "title") = capitalised(name_);
    at(schema_, "description") = "Built by " + recognition_.builder->name() + '.';
    for (const auto& [pattern, known] : kind_->places) describe(pattern, known.wanted);
    at(inside(schema_, {"className"}), "const") = recognition_.className;
    if (recognition_.type) at(inside(schema_, {"context", "type"}), "const") = *recognition_.type;
    for (const auto& [pattern, rules] : rules_) {
      for (const Rule& rule : rules) {
        if (rule.conditions.empty()) {
          restrict(schema_, stepsOf(pattern), rule.allowed, statesAt(pattern));
        } else {
          addConditional(pattern, rule);
        }
      }
    }
    for (auto& [holder, byCondition] : conditional_) {
      for (auto& [text, rule] : byCondition) append(inside(schema_, holder), "allOf", rule);
    }
    for (const auto& [pattern, known] : kind_->places) suggestWords(pattern);
    if (strictness_ == Strictness::kStrict) {
      std::set<std::string> holders;
      for (const auto& [pattern, known] : kind_->places) {
        holders.insert(pattern.substr(0, pattern.rfind('/')));
      }
      for (const std::string& holder : holders) close(holder);
    }
    return std::move(schema_);
  }

 private:
  States statesAt(const std::string& pattern) const {
    return reference_host::diagnosis::statesOf(pattern, words_);
  }

  void describe(const std::string& pattern, const std::string& wanted) {
    std::string text(proseFor(pattern));
    if (!text.empty()) text += ' ';
    text += "Read by the builder of the " + name_;
    text += wanted.empty() ? "." : ": " + reference_host::diagnosis::wantedWords(wanted) + '.';
    at(inside(schema_, stepsOf(pattern)), "description") = text;
  }

  /// Adds a rule where the place and all that it depends on are in reach.
  void addConditional(const std::string& pattern, const Rule& rule) {
    const Steps place = stepsOf(pattern);
    Steps holder(place.begin(), place.end() - 1);
    for (const Condition& condition : rule.conditions) {
      const Steps steps = stepsOf(condition.place);
      const auto end = std::mismatch(holder.begin(), holder.end(), steps.begin(), steps.end() - 1);
      holder.erase(end.first, holder.end());
    }
    const auto below = [&](const Steps& steps) {
      return Steps(steps.begin() + static_cast<std::ptrdiff_t>(holder.size()), steps.end());
    };
    Value::Array tests;
    for (const Condition& condition : rule.conditions) {
      if (!isImplied(condition, rule)) {
        tests.push_back(testOf(condition, below(stepsOf(condition.place))));
      }
    }
    Value test = allOf(std::move(tests));
    Value& conditional = conditional_[holder][asText(test)];
    at(conditional, "if") = std::move(test);
    restrict(at(conditional, "then"), below(place), rule.allowed, statesAt(pattern));
  }

  /// The shortest test: it may be met or not by states that the place must not be in anyway.
  Value testOf(const Condition& condition, const Steps& steps) const {
    const States every = statesAt(condition.place);
    States least = condition.states;
    States most = condition.states;
    const auto rules = rules_.find(condition.place);
    if (rules != rules_.end() && rules->second.front().conditions.empty()) {
      for (const State& state : every) {
        if (rules->second.front().allowed.count(state) != 0) continue;
        least.erase(state);
        most.insert(state);
      }
    }
    Value shortest;
    std::size_t length = std::string::npos;
    for (const States* states : std::array<const States*, 3>{&condition.states, &most, &least}) {
      Value test = wherePlaceIs(steps, *states, every);
      const std::size_t its = asText(test).size();
      if (its >= length) continue;
      length = its;
      shortest = std::move(test);
    }
    return shortest;
  }

  static std::string asText(const Value& value) {
    std::string text;
    reference_host::json::JsonWriter(text).json(value);
    return text;
  }

  /// Whether another condition can be met only where this one is.
  static bool isImplied(const Condition& condition, const Rule& rule) {
    if (condition.states != States{kAnObject}) return false;
    return std::any_of(rule.conditions.begin(), rule.conditions.end(), [&](const Condition& other) {
      return other.states.count(kAbsent) == 0 &&
             other.place.compare(0, condition.place.size() + 1, condition.place + '/') == 0;
    });
  }

  /// Offers the words that make a difference at a place, without refusing others.
  void suggestWords(const std::string& pattern) {
    std::set<std::string> found;
    for (const auto& [place, rules] : rules_) {
      for (const Rule& rule : rules) {
        for (const Condition& condition : rule.conditions) {
          if (condition.place != pattern) continue;
          const bool anyText = condition.states.count(kAnyText) != 0;
          for (const State& state : statesAt(pattern)) {
            if (!state.word.empty() && (condition.states.count(state) != 0) != anyText) {
              found.insert(state.word);
            }
          }
        }
      }
    }
    if (found.empty()) return;
    Value& place = inside(schema_, stepsOf(pattern));
    at(place, "anyOf") = Value::Array{
        Value::Object{{"enum", Value::Array(found.begin(), found.end())}}, Value::Object()};
  }

  /// Refuses members that are not read.
  void close(const std::string& pattern) {
    if (kind_->membersOf(pattern).empty()) return;
    at(inside(schema_, stepsOf(pattern)), "additionalProperties") = false;
  }

  const std::vector<std::string>& words_;
  const Recognition& recognition_;
  std::shared_ptr<const Kind> kind_;
  Rules rules_;
  Strictness strictness_;
  std::string name_;
  Value schema_;
  std::map<Steps, std::map<std::string, Value>> conditional_;  // by holder and condition
};

}  // namespace

Value kindSchemaOf(const Knowledge& knowledge, const Recognition& recognition,
                   Strictness strictness) {
  return KindSchema(knowledge, recognition, strictness).write();
}

}  // namespace tessel_tool
