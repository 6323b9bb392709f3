#include "reference_host/diagnosis/offered_object.hpp"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <vector>

#include "reference_host/diagnosis/nearest_word.hpp"
#include "reference_host/diagnosis/unclaimed_object.hpp"
#include "reference_host/diagnosis/wording.hpp"

namespace reference_host::diagnosis {

using foundation::json::traits;
using foundation::json::Undefined;
using foundation::json::Value;

namespace {

/// A longer text is not said again.
constexpr std::size_t kLongestText = 40;

bool isMissing(const Culprit& culprit) {
  return culprit.held == traits<Undefined>::name;
}

using Kinds = std::vector<std::shared_ptr<const Kind>>;

bool reads(const Kinds& kinds, const std::string& pattern) {
  return std::any_of(kinds.begin(), kinds.end(),
                     [&](const auto& kind) { return kind->reads(pattern); });
}

/// The members that are read of what stands at a place, first those that it is recognised by.
std::vector<std::string> membersOf(const Kind& kind, const std::string& pattern) {
  std::vector<std::string> names = kind.membersOf(pattern);
  std::stable_partition(names.begin(), names.end(), [&](const std::string& name) {
    std::string place = pattern;
    appendToPattern(place, name);
    return kind.places.at(place).forRecognition;
  });
  return names;
}

const Value::Object* membersAt(const Value& object, const Path& place) {
  const Value* value = valueAt(object, place);
  return value == nullptr ? nullptr : value->get_if<Value::Object>();
}

/// Where something is missing, the member that may be meant by it: one that is misspelt, or that
/// stands elsewhere.
/// @param kinds what the object may be.
std::optional<std::string> hintForMisplaced(const Kinds& kinds, const Value& object,
                                            const Culprit& culprit) {
  const std::string& name = *std::get_if<std::string>(&culprit.place.back());
  const Path holder = parentOf(culprit.place);
  const auto moveInto = [](const Path& place) {
    return "move " + quoted(*std::get_if<std::string>(&place.back())) + " into " +
           nameOfHolder(patternOf(parentOf(place)));
  };
  const auto isStranger = [&](const Path& place) {
    return valueAt(object, place) != nullptr && !reads(kinds, patternOf(place));
  };
  if (const auto* members = membersAt(object, holder)) {
    std::vector<std::string> strangers;
    for (const auto& [other, member] : *members) {
      if (isStranger(childOf(holder, other))) strangers.push_back(other);
    }
    const std::string meant = nearestWord(name, strangers);
    if (!meant.empty()) return "write " + quoted(name) + " instead of " + quoted(meant);
    // It may stand one level too low,
    for (const auto& [other, member] : *members) {
      if (isStranger(childOf(childOf(holder, other), name))) return moveInto(culprit.place);
    }
  }
  // or one or more levels too high, it or a container with it,
  for (auto end = culprit.place.end(); end != culprit.place.begin(); --end) {
    const Path missing(culprit.place.begin(), end);
    if (valueAt(object, missing) != nullptr) break;
    for (Path higher = parentOf(missing); !higher.empty();) {
      higher.pop_back();
      Path place = childOf(higher, missing.back());
      if (!isStranger(place)) continue;
      place.insert(place.end(), end, culprit.place.end());
      if (valueAt(object, place) != nullptr) return moveInto(missing);
    }
  }
  // or what belongs in it stands beside.
  std::vector<std::string> beside;
  for (const auto& kind : kinds) {
    for (const std::string& member : membersOf(*kind, patternOf(culprit.place))) {
      if (isStranger(childOf(holder, member)) &&
          std::find(beside.begin(), beside.end(), member) == beside.end()) {
        beside.push_back(member);
      }
    }
  }
  if (beside.empty()) return std::nullopt;
  std::string hint = quoted(beside.front());
  for (std::size_t index = 1; index != beside.size(); ++index) {
    hint += (index + 1 == beside.size() ? " and " : ", ") + quoted(beside[index]);
  }
  return hint + (beside.size() == 1 ? " belongs in " : " belong in ") +
         nameOfHolder(patternOf(culprit.place));
}

std::string hintForMissing(const OfferedObject& offered, const Culprit& culprit) {
  const Value& object = offered.value;
  if (auto hint = hintForMisplaced({offered.kind()}, object, culprit)) return *std::move(hint);
  const Path holder = parentOf(culprit.place);
  std::string hint = "add " + quoted(*std::get_if<std::string>(&culprit.place.back())) + ": " +
                     exampleOf(culprit.wanted);
  if (valueAt(object, holder) == nullptr) hint += " in " + nameOfHolder(patternOf(holder));
  return hint;
}

/// An object that is read at a place: `{"label": "...", "value": "..."}`; empty if nothing is read
/// of it.
/// @param text put into the members, if they are texts and it is short; may be null.
std::string exampleOfObject(const Kind& kind, const std::string& pattern,
                            const std::string* text = nullptr) {
  const std::vector<std::string> names = membersOf(kind, pattern);
  const auto wantedOf = [&](const std::string& name) {
    std::string place = pattern;
    appendToPattern(place, name);
    return kind.places.at(place).wanted;
  };
  const bool repeats = text != nullptr && text->size() <= kLongestText &&
                       std::all_of(names.begin(), names.end(), [&](const std::string& name) {
                         return wantedOf(name) == traits<std::string>::name;
                       });
  std::string members;
  for (std::size_t index = 0; index != std::min(names.size(), kMostNames); ++index) {
    members += (members.empty() ? "" : ", ") + quoted(names[index]) + ": ";
    const std::string wanted = wantedOf(names[index]);
    members += repeats ? quoted(*text) : wanted.empty() ? "..." : exampleOf(wanted);
  }
  if (names.size() > kMostNames) members += ", ...";
  return members.empty() ? members : '{' + members + '}';
}

std::string hintForWrong(const OfferedObject& object, const Culprit& culprit) {
  const std::shared_ptr<const Kind> held = object.kind();
  const Kind& kind = *held;
  const Value& value = *valueAt(object.value, culprit.place);
  const std::string pattern = patternOf(culprit.place);
  const auto known = kind.places.find(pattern);
  if (known != kind.places.end() && known->second.forRecognition) {
    const std::string* word = textAt(kind.sample, pathOf(pattern));
    if (word != nullptr) return "write " + quoted(*word);
  }
  const Remedy remedy =
      object.knowledge.remedyFor(object.builder, object.value, culprit.place, object.words);
  std::string hint = correctionOr(value, culprit.wanted);
  if (culprit.wanted == traits<Value::Object>::name) {
    const std::string example = exampleOfObject(kind, pattern, value.get_if<std::string>());
    if (!example.empty()) hint = "write an object: " + example;
  } else if (culprit.wanted == traits<Value::Array>::name) {
    const auto element = kind.places.find(pattern + "/*");
    std::string example = exampleOfObject(kind, pattern + "/*");
    if (example.empty() && element != kind.places.end())
      example = exampleOf(element->second.wanted);
    if (!example.empty()) hint = "write an array: [" + example + ", ...]";
  }
  if (!remedy.word.empty()) {
    return hint + ", or write " + quoted(remedy.wordKey) + ": " + quoted(remedy.word);
  }
  const bool isNull = value.get_if<foundation::json::Null>() != nullptr;
  const bool isScalar =
      culprit.wanted != traits<Value::Object>::name && culprit.wanted != traits<Value::Array>::name;
  const bool mayBeUnwanted = isNull || (isScalar && !correction(value, culprit.wanted));
  return mayBeUnwanted && remedy.canBeLeftOut ? hint + ", or leave it out" : hint;
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

/// What to write where a builder cannot tell by the value whether the object is one of its own.
std::string hintForUnrecognised(const Knowledge& knowledge, const Value& object,
                                const Culprit& culprit) {
  const std::vector<Recognition>& recognitions = knowledge.recognitions();
  const std::string* className = textAt(object, classNamePlace());
  if (isMissing(culprit)) {
    Kinds kinds;
    for (const Recognition& recognition : recognitions) {
      if (className == nullptr || recognition.className != *className) continue;
      kinds.push_back(knowledge.kindOf(*recognition.builder, recognition.sample()));
    }
    if (auto hint = hintForMisplaced(kinds, object, culprit)) return *std::move(hint);
  }
  const bool isContext = culprit.place == contextPlace();
  std::vector<std::string> words;
  if (culprit.place == classNamePlace()) {
    words = classNames(recognitions);
  } else if (className != nullptr && (isContext || culprit.place == typePlace())) {
    words = typesOf(*className, recognitions);
  }
  const std::string add = "add " + quoted(*std::get_if<std::string>(&culprit.place.back())) + ": ";
  if (words.empty()) {
    return isMissing(culprit) ? add + exampleOf(culprit.wanted)
                              : correctionOr(*valueAt(object, culprit.place), culprit.wanted);
  }
  if (!isContext && !isMissing(culprit)) return "write one of " + listed(words);
  const std::string word = quoted(words.front());
  return (isMissing(culprit) ? add : "write ") + (isContext ? "{\"type\": " + word + '}' : word) +
         orAnother(culprit.place == classNamePlace() ? "class name" : "type", words);
}

}  // namespace

Problem problemOf(const OfferedObject& object, importer::Step step,
                  const std::optional<Culprit>& culprit, const std::string& message) {
  const bool claimed = step == importer::Step::kBuild;
  const std::string name =
      nameOfObject(object.knowledge, claimed ? &object.builder : nullptr, object.value);
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
    problem.hint = missing ? hintForMissing(object, reason) : hintForWrong(object, reason);
  } else {
    problem.hint = hintForUnrecognised(object.knowledge, object.value, reason);
  }
  return problem;
}

}  // namespace reference_host::diagnosis
