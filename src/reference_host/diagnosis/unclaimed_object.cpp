#include "reference_host/diagnosis/unclaimed_object.hpp"

#include <algorithm>

#include "diagnosis/lints.hpp"
#include "reference_host/diagnosis/culprit.hpp"
#include "reference_host/diagnosis/nearest_word.hpp"
#include "reference_host/diagnosis/wording.hpp"

namespace reference_host::diagnosis {

using foundation::json::Value;
using Recognitions = std::vector<Recognition>;

namespace {

/// The class that a word names, with or without "ControlNode"; null if there is none.
const std::string* ownClassOf(const std::string& word, const Recognitions& recognitions) {
  for (const Recognition& recognition : recognitions) {
    if (recognition.type || bareClassName(recognition.className) != bareClassName(word)) continue;
    return &recognition.className;
  }
  return nullptr;
}

std::string hintForType(const std::string& className, const std::string& type,
                        const Recognitions& recognitions) {
  const std::vector<std::string> types = typesOf(className, recognitions);
  const std::string meant = nearestWord(type, types);
  if (!meant.empty()) return "did you mean " + quoted(meant) + '?';
  if (const std::string* own = ownClassOf(type, recognitions)) {
    return "write \"className\": " + quoted(*own) + " instead of " + quoted(className) +
           ", and take out \"type\"";
  }
  std::vector<std::string> others = classNames(recognitions);
  const auto isOfTypes = [&](const std::string& name) {
    return isGeneric(name, recognitions) ||
           std::find(types.begin(), types.end(), name) != types.end();
  };
  others.erase(std::remove_if(others.begin(), others.end(), isOfTypes), others.end());
  std::string hint = "known types: " + listed(types);
  if (!others.empty()) hint += "; other kinds have a class name of their own: " + listed(others);
  return hint;
}

std::optional<std::string> hintForClass(const std::string& className,
                                        const Recognitions& recognitions) {
  const std::string meant = nearestWord(className, classNames(recognitions));
  if (!meant.empty()) return "did you mean " + quoted(meant) + '?';
  for (const Recognition& recognition : recognitions) {
    if (!recognition.type || bareClassName(className) != bareClassName(*recognition.type)) continue;
    return "write \"className\": " + quoted(recognition.className) +
           " with \"type\": " + quoted(*recognition.type) + " in \"context\"";
  }
  const std::string* own = ownClassOf(className, recognitions);
  return own == nullptr ? std::nullopt : std::optional("write \"className\": " + quoted(*own));
}

std::string hintForNoClass(const Value& object, const Recognitions& recognitions) {
  static const std::string kName = "className";
  const std::vector<std::string> classes = classNames(recognitions);
  std::vector<std::string> names;
  std::string known;  // the first member that may hold a class name
  for (const auto& [name, member] : *object.get_if<Value::Object>()) {
    names.push_back(name);
    const auto* text = member.get_if<std::string>();
    if (text == nullptr || !known.empty()) continue;
    const bool isClass = std::find(classes.begin(), classes.end(), *text) != classes.end();
    if (isClass || ownClassOf(*text, recognitions) != nullptr ||
        !nearestWord(*text, classes).empty()) {
      known = name;
    }
  }
  std::string meant = nearestWord(kName, names);
  if (meant.empty()) meant = known;
  if (!meant.empty()) return "write " + quoted(kName) + " instead of " + quoted(meant);
  return "add " + quoted(kName) + ": " + quoted(classes.front()) + orAnother("class name", classes);
}

}  // namespace

std::optional<Guess> guessFor(const Value& object, const Recognitions& recognitions) {
  if (const std::string* className = textAt(object, classNamePlace())) {
    if (isGeneric(*className, recognitions)) {
      Guess guess{Code::kUnknownType, std::nullopt};
      const std::string* type = textAt(object, typePlace());
      if (type != nullptr) guess.hint = hintForType(*className, *type, recognitions);
      return guess;
    }
    if (auto hint = hintForClass(*className, recognitions)) {
      return Guess{Code::kUnknownClass, std::move(hint)};
    }
  }
  if (!looksLikeControl(object)) return std::nullopt;
  if (textAt(object, classNamePlace()) == nullptr) {
    return Guess{Code::kUnknownClass, hintForNoClass(object, recognitions)};
  }
  return Guess{Code::kUnknownClass, "known class names: " + listed(classNames(recognitions))};
}

std::vector<std::string> classNames(const Recognitions& recognitions) {
  std::vector<std::string> names;
  for (const Recognition& recognition : recognitions) {
    const std::string& name = recognition.className;
    if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
  }
  return names;
}

std::vector<std::string> typesOf(const std::string& className, const Recognitions& recognitions) {
  std::vector<std::string> types;
  for (const Recognition& recognition : recognitions) {
    if (recognition.type && recognition.className == className) types.push_back(*recognition.type);
  }
  return types;
}

bool isGeneric(const std::string& className, const Recognitions& recognitions) {
  return std::any_of(recognitions.begin(), recognitions.end(), [&](const auto& recognition) {
    return recognition.type && recognition.className == className;
  });
}

const std::vector<Path>& controlMarks() {
  static const std::vector<Path> marks{idPlace(), typePlace(), childOf(contextPlace(), "data")};
  return marks;
}

bool looksLikeControl(const Value& object) {
  return std::any_of(controlMarks().begin(), controlMarks().end(),
                     [&](const Path& mark) { return valueAt(object, mark) != nullptr; });
}

std::set<std::string> likelyNames(const Recognitions& recognitions) {
  std::set<std::string> names;
  for (const Recognition& recognition : recognitions) {
    names.insert(lowered(recognition.className));
    const std::string word = bareClassName(recognition.type.value_or(recognition.className));
    names.insert(word);
    names.insert(word + lowered(kClassEnding));
  }
  return names;
}

}  // namespace reference_host::diagnosis
