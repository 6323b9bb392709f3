#include "reference_host/diagnosis/offered_object.hpp"

#include <vector>

#include "reference_host/diagnosis/nearest_word.hpp"
#include "reference_host/diagnosis/wording.hpp"

namespace reference_host::diagnosis {

using foundation::json::traits;
using foundation::json::Undefined;
using foundation::json::Value;

namespace {

const std::string kObject = traits<Value::Object>::name;

bool isMissing(const Culprit& culprit) {
  return culprit.held == traits<Undefined>::name;
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
  if (isMissing(culprit)) {
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

}  // namespace

Problem problemOf(const OfferedObject& object, importer::Step step,
                  const std::optional<Culprit>& culprit, const std::string& message) {
  const bool claimed = step == importer::Step::kBuild;
  const std::string name = nameOfObject(claimed ? &object.builder : nullptr, object.value);
  Problem problem{claimed ? Code::kBuildFailed : Code::kCannotTell,
                  object.pointer,
                  {},
                  name + ": " + message,
                  {},
                  object.builder.name(),
                  {},
                  {}};
  if (!culprit) return problem;
  const Culprit reason = blamedFor(*culprit, object.value);
  const bool missing = isMissing(reason);
  problem.message = messageOf(name, reason);
  problem.member = object.pointer + pointerOf(reason.place);
  problem.held = reason.held;
  problem.wanted = reason.wanted;
  if (claimed) {
    problem.code = missing ? Code::kMissingMember : Code::kWrongType;
    problem.hint = missing ? hintForMissing(object.kind(), object.value, reason)
                           : hintForWrong(object.kind(), object.value, reason);
  } else {
    problem.hint = missing ? hintForUnrecognised(object.knowledge, object.value, reason)
                           : correction(*valueAt(object.value, reason.place), reason.wanted);
  }
  return problem;
}

}  // namespace reference_host::diagnosis
