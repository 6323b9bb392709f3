#include "reference_host/diagnosis/rules.hpp"

#include <algorithm>
#include <optional>

#include "reference_host/diagnosis/culprit.hpp"
#include "reference_host/json/pointer.hpp"

namespace reference_host::diagnosis {

using foundation::json::Null;
using foundation::json::traits;
using foundation::json::Undefined;
using foundation::json::Value;
using importer::NamedBuilder;

namespace {

/// So often an object is made right before a trial is given up.
constexpr int kMostRepairs = 20;

const State kAbsent{traits<Undefined>::name, {}};

bool isInside(const std::string& pattern, const std::string& outer) {
  return pattern.size() > outer.size() && pattern.compare(0, outer.size(), outer) == 0 &&
         pattern[outer.size()] == '/';
}

/// Whether the place can be spoken of wherever another one can: the arrays that it lies in are
/// those that the other lies in, too.
bool isInArraysOf(const std::string& pattern, const std::string& other) {
  const std::size_t element = pattern.rfind("/*");
  return element == std::string::npos ||
         other.compare(0, element + 3, pattern, 0, element + 3) == 0;
}

/// Learns the rules of one kind, from an object that is built and in which everything stands that
/// is read.
class RuleLesson {
 public:
  RuleLesson(const NamedBuilder& builder, const Kind& kind, const std::vector<std::string>& words)
      : builder_(builder), sample_(kind.sample) {
    const std::vector<Path> asked =
        attempt(builder, importer::Step::kBuild, sample_).trace.askedPlaces();
    for (const std::string& pattern : patternsOf(kind)) {
      const Path path = pathOf(pattern);
      const Value* holder = valueAt(sample_, parentOf(path));
      const bool isElement = std::get_if<std::size_t>(&path.back()) != nullptr;
      if (holder == nullptr || (isElement ? holder->get_if<Value::Array>() == nullptr
                                          : holder->get_if<Value::Object>() == nullptr)) {
        continue;
      }
      Place place{pattern, path, statesOf(pattern, words), {}, 0};
      place.base = stateAt(path, place.states);
      const auto read = std::find(asked.begin(), asked.end(), path);
      // What is looked at without being asked for comes first.
      place.rank = read == asked.end() ? 0 : static_cast<std::size_t>(read - asked.begin()) + 1;
      places_.push_back(std::move(place));
    }
    // A container comes before what is in it: their patterns sort so.
    std::stable_sort(places_.begin(), places_.end(),
                     [](const Place& left, const Place& right) { return left.rank < right.rank; });
  }

  Rules learn() {
    for (std::size_t place = 0; place != places_.size(); ++place) {
      alone_.push_back(*allowed(place, {}));
      matters_.push_back(mattersFor(place));
      std::vector<Rule> rules = rulesFor(place, {matters_[place].begin(), matters_[place].end()});
      const States& all = places_[place].states;
      rules.erase(std::remove_if(rules.begin(), rules.end(),
                                 [&](const Rule& rule) { return rule.allowed == all; }),
                  rules.end());
      if (!rules.empty()) rules_[places_[place].pattern] = std::move(rules);
    }
    return std::move(rules_);
  }

 private:
  struct Place {
    std::string pattern;
    Path path;
    States states;
    State base;  ///< in the sample
    std::size_t rank;
  };
  using PlaceIndex = std::size_t;
  using Setting = std::pair<PlaceIndex, State>;
  enum class Verdict { kAccepted, kRefused, kNotReached };

  /// All that is read but what an object is recognised by, and the elements that it is read of.
  static std::set<std::string> patternsOf(const Kind& kind) {
    std::set<std::string> patterns;
    for (const auto& [pattern, known] : kind.places) {
      const bool inElement = pattern.find("/*/") != std::string::npos;
      if (!known.forRecognition || inElement) patterns.insert(pattern);
      for (std::size_t end = pattern.find("/*/"); end != std::string::npos;
           end = pattern.find("/*/", end + 1)) {
        patterns.insert(pattern.substr(0, end + 2));
      }
    }
    return patterns;
  }

  State stateAt(const Path& path, const States& states) const {
    const Value* value = valueAt(sample_, path);
    State state{typeNameOf(value), {}};
    if (const auto* text = value == nullptr ? nullptr : value->get_if<std::string>()) {
      if (states.count({state.type, *text}) != 0) state.word = *text;
    }
    return state;
  }

  /// The places, among those that are read before, that make a difference to what one may hold.
  std::set<PlaceIndex> mattersFor(PlaceIndex place) const {
    std::set<PlaceIndex> found;
    for (PlaceIndex other = 0; other != place; ++other) {
      if (isInside(places_[place].pattern, places_[other].pattern) ||
          !isInArraysOf(places_[other].pattern, places_[place].pattern)) {
        continue;
      }
      for (const State& state : alone_[other]) {
        if (state == places_[other].base) continue;
        const auto with = allowed(place, {{other, state}});
        if (!with || *with == alone_[place]) continue;
        found.insert(other);
        // What matters for that one may matter with it, unless this place lies in it.
        for (const PlaceIndex further : matters_[other]) {
          if (!isInside(places_[place].pattern, places_[further].pattern)) found.insert(further);
        }
        break;
      }
    }
    return found;
  }

  /// A decision on the first of the places that matter, and below it on the others.
  std::vector<Rule> rulesFor(PlaceIndex place, const std::vector<PlaceIndex>& matter,
                             std::vector<Setting> settings = {}) const {
    if (settings.size() == matter.size()) {
      const auto states = allowed(place, settings);
      if (!states) return {};
      return {{{}, *states}};
    }
    const Place& decisive = places_[matter[settings.size()]];
    std::vector<std::pair<std::vector<Rule>, States>> groups;
    States unreached;
    for (const State& state : decisive.states) {
      if (isImpossible(decisive, state, settings)) continue;
      settings.emplace_back(matter[settings.size()], state);
      auto rules = rulesFor(place, matter, settings);
      settings.pop_back();
      if (rules.empty()) {
        unreached.insert(state);
        continue;
      }
      const auto group = std::find_if(groups.begin(), groups.end(),
                                      [&](const auto& known) { return known.first == rules; });
      if (group == groups.end()) {
        groups.emplace_back(std::move(rules), States{state});
      } else {
        group->second.insert(state);
      }
    }
    if (groups.empty()) return {};
    // Where the place is not read, any rule will do: the one of the sample.
    auto usual = std::find_if(groups.begin(), groups.end(), [&](const auto& group) {
      return group.second.count(decisive.base) != 0;
    });
    if (usual == groups.end()) usual = groups.begin();
    usual->second.insert(unreached.begin(), unreached.end());

    std::vector<Rule> rules;
    for (auto& [below, states] : groups) {
      for (Rule& rule : below) {
        if (groups.size() > 1) {
          rule.conditions.insert(rule.conditions.begin(), {decisive.pattern, states});
        }
        rules.push_back(std::move(rule));
      }
    }
    return rules;
  }

  /// Nothing but `undefined` is possible inside what is no container.
  bool isImpossible(const Place& place, const State& state,
                    const std::vector<Setting>& settings) const {
    return state.type != kAbsent.type &&
           std::any_of(settings.begin(), settings.end(), [&](const Setting& setting) {
             const Place& outer = places_[setting.first];
             return isInside(place.pattern, outer.pattern) && !(setting.second == outer.base);
           });
  }

  /// What a place may hold; nothing where a setting is refused, so that it does not matter.
  std::optional<States> allowed(PlaceIndex place, const std::vector<Setting>& settings) const {
    States accepted;
    for (const State& state : places_[place].states) {
      std::vector<Setting> with = settings;
      with.emplace_back(place, state);
      const Verdict verdict = tryOut(with);
      if (verdict == Verdict::kNotReached) return std::nullopt;
      if (verdict == Verdict::kAccepted) accepted.insert(state);
    }
    return accepted;
  }

  /// Whether the last setting is accepted with the others, and everything else right.
  Verdict tryOut(const std::vector<Setting>& settings) const {
    Value object = sample_;
    for (const Setting& setting : settings) set(object, setting);
    const Path& place = places_[settings.back().first].path;
    for (int repair = 0; repair != kMostRepairs; ++repair) {
      const Attempt built = attempt(builder_, importer::Step::kBuild, object);
      if (built.succeeded) return Verdict::kAccepted;
      const auto culprit = findCulprit(builder_, importer::Step::kBuild, object, built);
      if (!culprit || isWithin(culprit->place, place)) return Verdict::kRefused;
      for (const Setting& setting : settings) {
        const Path& fixed = places_[setting.first].path;
        if (isWithin(culprit->place, fixed)) return Verdict::kNotReached;
      }
      put(object, culprit->place, someValueOf(culprit->wanted));
    }
    return Verdict::kRefused;
  }

  void set(Value& object, const Setting& setting) const {
    const auto& [index, state] = setting;
    const Place& place = places_[index];
    if (state == place.base) return;
    const Value* holder = valueAt(object, parentOf(place.path));
    if (state.type == kAbsent.type) {
      if (holder == nullptr) return;
      if (std::get_if<std::size_t>(&place.path.back()) != nullptr) {
        put(object, parentOf(place.path), Value::Array());
      } else {
        removeMember(object, place.path);
      }
    } else {
      put(object, place.path, state.word.empty() ? someValueOf(state.type) : Value(state.word));
    }
  }

  const NamedBuilder& builder_;
  Value sample_;
  std::vector<Place> places_;
  std::vector<States> alone_;
  std::vector<std::set<PlaceIndex>> matters_;
  Rules rules_;
};

void setState(Value::Object& members, const char* name, const State& state) {
  if (state.type == kAbsent.type) return;
  members[name] = state.word.empty() ? someValueOf(state.type) : Value(state.word);
}

/// What an import does with objects that have these states.
Fate fateOf(const Knowledge& knowledge, const State& className, const State& context,
            const State& type) {
  Value::Object members;
  setState(members, "className", className);
  if (context.type == traits<Value::Object>::name) {
    Value::Object inner;
    setState(inner, "type", type);
    members["context"] = std::move(inner);
  } else {
    setState(members, "context", context);
  }
  const Value object = std::move(members);
  bool failed = false;
  for (const NamedBuilder& builder : knowledge.builders()) {
    const Attempt asked = attempt(builder, importer::Step::kCanBuild, object);
    failed = failed || !asked.succeeded;
    if (!asked.claimed) continue;
    for (const Recognition& recognition : knowledge.recognitions()) {
      if (recognition.builder == &builder && recognition.className == className.word &&
          (!recognition.type || *recognition.type == type.word)) {
        return {Fate::Kind::kClaimed, &recognition};
      }
    }
  }
  return {failed ? Fate::Kind::kError : Fate::Kind::kWalked, nullptr};
}

}  // namespace

States statesOf(std::string_view pattern, const std::vector<std::string>& words) {
  States states{kAbsent};
  for (const char* type : kWantedTypes) states.insert({type, {}});
  states.insert({traits<Null>::name, {}});
  const auto tokens = json::tokensOf(pattern);
  if (!tokens.empty() && isWordKey(json::nameOf(tokens.back()))) {
    for (const std::string& word : words) states.insert({traits<std::string>::name, word});
  }
  return states;
}

bool ClassFate::isOne() const {
  return std::all_of(fates.begin(), fates.end(),
                     [&](const auto& fate) { return fate.second == fates.front().second; });
}

Rules learnRules(const Knowledge& knowledge, const Recognition& recognition) {
  return RuleLesson(*recognition.builder,
                    *knowledge.kindOf(*recognition.builder, recognition.sample()),
                    knowledge.words())
      .learn();
}

std::vector<ClassFate> learnFates(const Knowledge& knowledge) {
  std::vector<ClassFate> fates;
  for (const State& className : statesOf("/className", knowledge.words())) {
    ClassFate found{className, {}};
    for (const State& context : statesOf("/context", knowledge.words())) {
      const States types = context.type == traits<Value::Object>::name
                               ? statesOf("/context/type", knowledge.words())
                               : States{kAbsent};
      for (const State& type : types) {
        found.fates.push_back({{context, type}, fateOf(knowledge, className, context, type)});
      }
    }
    fates.push_back(std::move(found));
  }
  return fates;
}

}  // namespace reference_host::diagnosis
