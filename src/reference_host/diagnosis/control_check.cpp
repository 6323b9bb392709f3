#include "reference_host/diagnosis/control_check.hpp"

#include <algorithm>
#include <set>
#include <utility>

#include "diagnosis/shape.hpp"
#include "reference_host/diagnosis/nearest_word.hpp"
#include "reference_host/diagnosis/wording.hpp"
#include "reference_host/json/pointer.hpp"

namespace reference_host::diagnosis {

using foundation::json::traits;
using foundation::json::Undefined;
using foundation::json::Value;
using importer::NamedBuilder;

namespace {

const std::string kObject = traits<Value::Object>::name;
const std::string kUndefined = traits<Undefined>::name;

/// What is to blame for a culprit: of a value that is missing because what should hold it is no
/// object, that one.
Culprit blamed(const Value& object, Culprit culprit) {
  if (culprit.held != kUndefined) return culprit;
  for (Path place = parentOf(culprit.place); !place.empty(); place.pop_back()) {
    const Value* holder = valueAt(object, place);
    if (holder == nullptr) continue;
    if (holder->get_if<Value::Object>() == nullptr) return {place, typeNameOf(*holder), kObject};
    break;
  }
  return culprit;
}

/// The members of an object that are not read there, for those that may be meant by a missing one.
std::vector<std::string> strangersIn(const Kind& kind, const Value& object, const Path& holder) {
  std::vector<std::string> names;
  const Value* value = valueAt(object, holder);
  const auto* members = value == nullptr ? nullptr : value->get_if<Value::Object>();
  if (members == nullptr) return names;
  for (const auto& [name, member] : *members) {
    if (!kind.reads(patternOf(childOf(holder, name)))) names.push_back(name);
  }
  return names;
}

std::string hintForMissing(const Kind& kind, const Value& object, const Culprit& culprit) {
  const std::string& name = *std::get_if<std::string>(&culprit.place.back());
  const Path holder = parentOf(culprit.place);
  const std::string meant = nearestWord(name, strangersIn(kind, object, holder));
  if (!meant.empty()) return "write " + quoted(name) + " instead of " + quoted(meant);
  // It may stand one or more levels too high.
  for (Path higher = holder; !higher.empty();) {
    higher.pop_back();
    if (valueAt(object, childOf(higher, name)) != nullptr &&
        !kind.reads(patternOf(childOf(higher, name)))) {
      return "move " + quoted(name) + " into " + nameOfHolder(patternOf(holder));
    }
  }
  std::string hint = "add " + quoted(name) + ": " + exampleOf(culprit.wanted);
  const Value* value = valueAt(object, holder);
  if (value == nullptr) hint += " in " + nameOfHolder(patternOf(holder));
  return hint;
}

std::optional<std::string> hintForWrong(const Kind& kind, const Value& object,
                                        const Culprit& culprit) {
  const Value* held = valueAt(object, culprit.place);
  if (held == nullptr) return std::nullopt;
  if (culprit.wanted == kObject) {
    std::string members;
    for (const std::string& name : kind.membersOf(patternOf(culprit.place))) {
      members += (members.empty() ? "" : ", ") + quoted(name) + ": ...";
    }
    if (!members.empty()) return "write an object: {" + members + '}';
  }
  return correction(*held, culprit.wanted);
}

/// "slider "threshold": "minimum" is text, but a number is wanted".
std::string messageOf(const std::string& name, const Culprit& culprit) {
  std::string message = name + ": " + nameOfPlace(culprit.place);
  if (culprit.held == kUndefined) {
    return message + " is missing, " + wantedWords(culprit.wanted) + " is required";
  }
  return message + " is " + heldWords(culprit.held) + ", but " + wantedWords(culprit.wanted) +
         " is wanted";
}

/// What to add where something is missing by which a builder recognises its objects.
std::string hintForUnrecognised(const Knowledge& knowledge, const Value& object,
                                const Culprit& culprit) {
  const std::string hint = "add " + quoted(*std::get_if<std::string>(&culprit.place.back())) + ": ";
  const bool isContext = culprit.place == contextPlace();
  if (!isContext && culprit.place != typePlace()) return hint + exampleOf(culprit.wanted);
  const Value* className = valueAt(object, classNamePlace());
  std::string types;
  for (const Recognition& recognition : knowledge.recognitions()) {
    if (!recognition.type || className == nullptr || *className != Value(recognition.className)) {
      continue;
    }
    types += (types.empty() ? "" : ", ") + quoted(*recognition.type);
  }
  if (types.empty()) return hint + exampleOf(culprit.wanted);
  return hint + (isContext ? "{\"type\": T, ...}, where T" : "T, which") + " is one of " + types;
}

Problem problemWith(Code code, const std::string& builder, const std::string& name,
                    const std::string& pointer, const Value& object,
                    const std::optional<Culprit>& culprit, const std::string& message) {
  Problem problem{code, pointer, {}, name + ": " + message, {}, builder, {}, {}};
  if (!culprit) return problem;
  const Culprit reason = blamed(object, *culprit);
  problem.message = messageOf(name, reason);
  problem.member = pointer + pointerOf(reason.place);
  problem.held = reason.held;
  problem.wanted = reason.wanted;
  return problem;
}

Problem problemOfBuild(const Kind& kind, const std::string& builder, const std::string& name,
                       const std::string& pointer, const Value& object,
                       const std::optional<Culprit>& culprit, const std::string& message) {
  Problem problem =
      problemWith(Code::kBuildFailed, builder, name, pointer, object, culprit, message);
  if (!culprit) return problem;
  const Culprit reason = blamed(object, *culprit);
  if (reason.held == kUndefined) {
    problem.code = Code::kMissingMember;
    problem.hint = hintForMissing(kind, object, reason);
  } else {
    problem.code = Code::kWrongType;
    problem.hint = hintForWrong(kind, object, reason);
  }
  return problem;
}

/// Finds the errors of an object one after the other, each in a copy in which those before it are
/// made right.
class ErrorSearch {
 public:
  ErrorSearch(const Knowledge& knowledge, const NamedBuilder& builder, const Kind& kind,
              const std::string& pointer, const Value& object)
      : knowledge_(knowledge),
        builder_(builder),
        kind_(kind),
        pointer_(pointer),
        object_(object),
        corrected_(object) {}

  std::vector<Problem> run() {
    for (;;) {
      const Attempt built = attempt(builder_, importer::Step::kBuild, corrected_);
      if (built.succeeded) {
        builds_ = true;
        break;
      }
      const auto found = findCulprit(builder_, importer::Step::kBuild, corrected_, built);
      if (!found) {
        tell(std::nullopt, built.message);
        break;
      }
      const Culprit culprit = blamed(corrected_, *found);
      // A builder that wants now this and now that of one value is not followed for ever.
      if (!blamed_.insert(culprit.place).second) break;
      correctAlike(culprit);
    }
    return std::move(problems_);
  }

  /// The object with all errors made right; it builds if `builds` says so.
  const Value& corrected() const { return corrected_; }
  bool builds() const { return builds_; }

 private:
  /// Makes a culprit right, and its like in the array that it is in.
  void correctAlike(const Culprit& culprit) {
    const auto index = std::find_if(
        culprit.place.rbegin(), culprit.place.rend(),
        [](const PathStep& step) { return std::get_if<std::size_t>(&step) != nullptr; });
    if (index == culprit.place.rend()) {
      correct(culprit);
      return;
    }
    const auto depth = static_cast<std::size_t>(culprit.place.rend() - index) - 1;
    const Path array(culprit.place.begin(),
                     culprit.place.begin() + static_cast<std::ptrdiff_t>(depth));
    const std::size_t first = *std::get_if<std::size_t>(&culprit.place[depth]);
    const std::size_t count = valueAt(corrected_, array)->get_if<Value::Array>()->size();
    const std::string shape = shapeOf(*valueAt(corrected_, childOf(array, first)));
    const Value fitting = correct(culprit);
    for (std::size_t next = first + 1; next < count; ++next) {
      if (shapeOf(*valueAt(corrected_, childOf(array, next))) != shape) continue;
      Culprit alike = culprit;
      alike.place[depth] = next;
      note(alike);
      put(corrected_, alike.place, fitting);
      blamed_.insert(alike.place);
    }
  }

  /// @return the value that was put in the culprit's place.
  Value correct(const Culprit& culprit) {
    note(culprit);
    Value fitting = fittingFor(culprit);
    put(corrected_, culprit.place, fitting);
    return fitting;
  }

  void note(const Culprit& culprit) {
    const bool inEmptied =
        std::any_of(emptied_.begin(), emptied_.end(),
                    [&](const Path& container) { return isWithin(culprit.place, container); });
    if (!inEmptied) tell(culprit, {});
    const Value empty = someValueOf(culprit.wanted);
    if (culprit.held != kUndefined &&
        (empty.get_if<Value::Object>() != nullptr || empty.get_if<Value::Array>() != nullptr)) {
      emptied_.insert(culprit.place);
    }
  }

  void tell(const std::optional<Culprit>& culprit, const std::string& message) {
    if (name_.empty()) name_ = nameOfObject(&builder_, object_);
    problems_.push_back(
        problemOfBuild(kind_, builder_.name(), name_, pointer_, object_, culprit, message));
  }

  /// Of the values that a right one may be, the one with which most is read: a word may decide what
  /// else is read, and of which type it has to be.
  Value fittingFor(const Culprit& culprit) const {
    Value best = someValueOf(culprit.wanted);
    const auto* name = std::get_if<std::string>(&culprit.place.back());
    if (best.get_if<std::string>() == nullptr || name == nullptr || !isWordKey(*name)) return best;
    auto most = readsWith(culprit.place, best);
    for (const std::string& word : knowledge_.words()) {
      const auto reads = readsWith(culprit.place, word);
      if (reads <= most) continue;
      most = reads;
      best = word;
    }
    return best;
  }

  /// Whether anything is read of what holds the place, and how much is read in all.
  std::pair<bool, std::size_t> readsWith(const Path& place, const Value& value) const {
    Value with = corrected_;
    put(with, place, value);
    const ReadTrace trace = attempt(builder_, importer::Step::kBuild, with).trace;
    return {trace.wasHolder(parentOf(place)), trace.readCount()};
  }

  const Knowledge& knowledge_;
  const NamedBuilder& builder_;
  const Kind& kind_;
  const std::string& pointer_;
  const Value& object_;
  Value corrected_;
  std::string name_;
  bool builds_ = false;
  std::set<Path> blamed_;
  std::set<Path> emptied_;
  std::vector<Problem> problems_;
};

/// Finds the members of an object that make no difference.
class UnreadSearch {
 public:
  UnreadSearch(const Knowledge& knowledge, const NamedBuilder& builder, const Kind& kind,
               const std::string& pointer, const Value& object, const Value& corrected)
      : knowledge_(knowledge),
        builder_(builder),
        kind_(kind),
        pointer_(pointer),
        object_(object),
        corrected_(corrected),
        trace_(attempt(builder, importer::Step::kBuild, corrected).trace) {}

  std::vector<Problem> run() {
    visitMembers({}, object_);
    keepUnread();
    for (const Path& place : unread_) tellUnread(place);
    return std::move(problems_);
  }

 private:
  void visitMembers(const Path& holder, const Value& value) {
    for (const auto& [name, member] : *value.get_if<Value::Object>()) {
      Path place = childOf(holder, name);
      const auto known = kind_.places.find(patternOf(place));
      const bool recognised = known != kind_.places.end() && known->second.forRecognition;
      if (!trace_.wasAsked(place) && !recognised) {
        unread_.push_back(std::move(place));
      } else {
        visitRead(place, member, recognised);
      }
    }
  }

  void visitRead(const Path& place, const Value& value, bool recognised) {
    const bool wrong = typeNameOf(valueAt(corrected_, place)) != std::string(typeNameOf(value));
    if (wrong) return;  // an error
    const bool holder = trace_.wasHolder(place);
    if (const auto* elements = value.get_if<Value::Array>(); elements != nullptr && !holder) {
      visitElements(place, *elements);
    }
    if (holder && value.get_if<Value::Object>() != nullptr) {
      visitMembers(place, value);
    } else if (holder) {
      ignored(place, "is " + heldWords(typeNameOf(value)) + " and passed over",
              "write an object: {...}");
    } else if (!recognised) {
      const std::string wanted = knowledge_.wantedInstead(builder_, corrected_, place);
      if (wanted.empty()) return;
      ignored(place, "is " + heldWords(typeNameOf(value)) + " and passed over",
              correction(value, wanted));
    }
  }

  void visitElements(const Path& array, const Value::Array& elements) {
    std::string pattern = patternOf(array) + "/*";
    const bool haveMembers = kind_.readsBelow(pattern);
    for (std::size_t index = 0; index != elements.size(); ++index) {
      const Path place = childOf(array, index);
      if (trace_.wasHolder(place)) {
        if (elements[index].get_if<Value::Object>() != nullptr)
          visitMembers(place, elements[index]);
      } else if (haveMembers) {
        ignored(place, "is none of those that are read, and passed over", std::nullopt);
      }
    }
  }

  /// Leaves only the members without which the same is built: a builder may go over an object's
  /// members without asking for any.
  void keepUnread() {
    if (unread_.empty()) return;
    const auto node = nodeBuilt(builder_, corrected_);
    const auto buildsTheSameWithout = [&](const std::vector<Path>& places) {
      Value without = corrected_;
      for (const Path& place : places) removeMember(without, place);
      return nodeBuilt(builder_, without) == node;
    };
    if (buildsTheSameWithout(unread_)) return;
    std::vector<Path> kept;
    for (const Path& place : unread_) {
      if (kept.size() < kMostTrials && buildsTheSameWithout({place})) kept.push_back(place);
    }
    unread_ = std::move(kept);
  }

  void tellUnread(const Path& place) {
    const std::string pattern = patternOf(place);
    if (kind_.reads(pattern)) {
      ignored(place, "is not read here", conditionOf(place));
    } else {
      Problem problem = problemAt(place, Code::kUnknownMember, "is not known here");
      problem.hint = hintForUnknown(place);
      problems_.push_back(std::move(problem));
    }
  }

  /// The missing member that makes another one read.
  std::optional<std::string> conditionOf(const Path& place) const {
    for (const auto& [pattern, known] : kind_.places) {
      if (known.wanted.empty() || pattern.find('*') != std::string::npos) continue;
      const Path other = pathTo({}, pattern);
      if (valueAt(corrected_, other) != nullptr) continue;
      Value with = corrected_;
      put(with, other, someValueOf(known.wanted));
      if (attempt(builder_, importer::Step::kBuild, with).trace.wasAsked(place)) {
        return "it is read only where there is " + nameOfHolder(pattern);
      }
    }
    return std::nullopt;
  }

  std::optional<std::string> hintForUnknown(const Path& place) const {
    const std::string& name = *std::get_if<std::string>(&place.back());
    const std::string holder = patternOf(parentOf(place));
    std::vector<std::string> free;
    for (const std::string& member : kind_.membersOf(holder)) {
      if (valueAt(object_, childOf(parentOf(place), member)) == nullptr) free.push_back(member);
    }
    std::string meant = nearestWord(name, free);
    if (!meant.empty()) return "did you mean " + quoted(meant) + '?';
    const std::vector<std::string> holders = kind_.holdersOf(name);
    if (!holders.empty()) return quoted(name) + " belongs in " + nameOfHolder(holders.front());
    for (const auto& [pattern, known] : kind_.places) {
      // It may be a misspelling of what belongs elsewhere.
      const std::size_t slash = pattern.rfind('/');
      const std::string other = json::nameOf(std::string_view(pattern).substr(slash + 1));
      if (pattern.substr(0, slash) == holder || nearestWord(name, {other}).empty()) continue;
      return "did you mean " + quoted(other) + " in " + nameOfHolder(pattern.substr(0, slash)) +
             '?';
    }
    if (free.empty() || free.size() > kMostNames) return std::nullopt;
    std::string names;
    for (const std::string& member : free) names += (names.empty() ? "" : ", ") + quoted(member);
    return "what can be added here: " + names;
  }

  void ignored(const Path& place, const std::string& what, std::optional<std::string> hint) {
    Problem problem = problemAt(place, Code::kIgnoredMember, what);
    problem.hint = std::move(hint);
    problems_.push_back(std::move(problem));
  }

  Problem problemAt(const Path& place, Code code, const std::string& what) {
    if (name_.empty()) name_ = nameOfObject(&builder_, object_);
    Problem problem{code,
                    pointer_,
                    pointer_ + pointerOf(place),
                    name_ + ": " + nameOfPlace(place) + ' ' + what,
                    {},
                    builder_.name(),
                    {},
                    {}};
    problem.atKey = true;
    return problem;
  }

  static constexpr std::size_t kMostTrials = 100;
  static constexpr std::size_t kMostNames = 12;

  const Knowledge& knowledge_;
  const NamedBuilder& builder_;
  const Kind& kind_;
  const std::string& pointer_;
  const Value& object_;
  const Value& corrected_;
  ReadTrace trace_;
  std::string name_;
  std::vector<Path> unread_;
  std::vector<Problem> problems_;
};

}  // namespace

std::vector<Problem> checkControl(const Knowledge& knowledge, const NamedBuilder& builder,
                                  const std::string& pointer, const Value& object) {
  const Kind& kind = knowledge.kindOf(builder, object);
  ErrorSearch errors(knowledge, builder, kind, pointer, object);
  std::vector<Problem> problems = errors.run();
  if (!errors.builds()) return problems;
  for (Problem& problem :
       UnreadSearch(knowledge, builder, kind, pointer, object, errors.corrected()).run()) {
    problems.push_back(std::move(problem));
  }
  return problems;
}

Problem problemOf(const Knowledge& knowledge, const NamedBuilder& builder, importer::Step step,
                  const std::string& pointer, const Value& object,
                  const std::optional<Culprit>& culprit, const std::string& message) {
  if (step == importer::Step::kBuild) {
    return problemOfBuild(knowledge.kindOf(builder, object), builder.name(),
                          nameOfObject(&builder, object), pointer, object, culprit, message);
  }
  Problem problem = problemWith(Code::kCannotTell, builder.name(), nameOfObject(nullptr, object),
                                pointer, object, culprit, message);
  if (!culprit) return problem;
  const Culprit reason = blamed(object, *culprit);
  if (const Value* held = valueAt(object, reason.place)) {
    problem.hint = correction(*held, reason.wanted);
  } else {
    problem.hint = hintForUnrecognised(knowledge, object, reason);
  }
  return problem;
}

}  // namespace reference_host::diagnosis
