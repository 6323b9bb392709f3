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

std::optional<std::string> hintForOwnClass(const std::string& word,
                                           const Recognitions& recognitions) {
  for (const Recognition& recognition : recognitions) {
    if (recognition.type || bareClassName(recognition.className) != bareClassName(word)) continue;
    return "write \"className\": " + quoted(recognition.className);
  }
  return std::nullopt;
}

std::optional<std::string> hintForType(const std::string& type, const Recognitions& recognitions) {
  std::vector<std::string> types;
  for (const Recognition& recognition : recognitions) {
    if (recognition.type) types.push_back(*recognition.type);
  }
  const std::string meant = nearestWord(type, types);
  if (!meant.empty()) return "did you mean " + quoted(meant) + '?';
  if (auto hint = hintForOwnClass(type, recognitions)) return hint;
  std::string list;
  for (const std::string& known : types) list += (list.empty() ? "" : ", ") + quoted(known);
  return "known types: " + list;
}

std::optional<std::string> hintForClass(const std::string& className,
                                        const Recognitions& recognitions) {
  std::vector<std::string> classes;
  for (const Recognition& recognition : recognitions) classes.push_back(recognition.className);
  const std::string meant = nearestWord(className, classes);
  if (!meant.empty()) return "did you mean " + quoted(meant) + '?';
  for (const Recognition& recognition : recognitions) {
    if (!recognition.type || bareClassName(className) != bareClassName(*recognition.type)) continue;
    return "write \"className\": " + quoted(recognition.className) +
           " with \"type\": " + quoted(*recognition.type) + " in \"context\"";
  }
  return hintForOwnClass(className, recognitions);
}

bool looksLikeControl(const Value& object) {
  return std::any_of(controlMarks().begin(), controlMarks().end(),
                     [&](const Path& mark) { return valueAt(object, mark) != nullptr; });
}

}  // namespace

std::optional<Guess> guessFor(const Value& object, const Recognitions& recognitions) {
  if (const std::string* className = textAt(object, classNamePlace())) {
    if (isGeneric(*className, recognitions)) {
      const std::string* type = textAt(object, typePlace());
      return Guess{Code::kUnknownType,
                   type == nullptr ? std::nullopt : hintForType(*type, recognitions)};
    }
    if (auto hint = hintForClass(*className, recognitions)) {
      return Guess{Code::kUnknownClass, std::move(hint)};
    }
  }
  if (!looksLikeControl(object)) return std::nullopt;
  return Guess{Code::kUnknownClass, std::nullopt};
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
