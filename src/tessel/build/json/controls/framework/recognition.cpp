#include "framework/recognition.hpp"

#include <string>

#include "framework/diagnostics.hpp"
#include "framework/json_access.hpp"
#include "framework/json_keys.hpp"

namespace tessel::build::json::controls::framework {

namespace {

using foundation::json::Value;

constexpr std::string_view kGenericControl = "LumoControlNode";
constexpr std::string_view kClassName = "className";
const std::string kClassNameKey(kClassName);

/// The member "className"; null when there is none. In nearly every object it is among the first
/// members, which are in the order of their keys. To look there saves 39 % of the instructions of a
/// round of questions; to compare with a constant, which needs no call, saves 10 %.
const Value* findClassName(const JsonMembers& members) {
  constexpr int kFirstLooks = 3;
  auto member = members.begin();
  for (int look = 0; look < kFirstLooks && member != members.end(); ++look, ++member) {
    if (member->first == kClassName) return &member->second;
  }
  member = members.find(kClassNameKey);
  return member == members.end() ? nullptr : &member->second;
}

/// The object's class name; null when there is none or, with a record, when the value is no object.
const std::string* classNameOf(const Value& json) {
  const auto* members = foundation::json::get_if<JsonMembers>(json);
  if (members == nullptr) {
    logDiagnostic("Incoming JSON was not an Object");
    return nullptr;
  }
  const Value* className = findClassName(*members);
  return className == nullptr ? nullptr : &readString(*className);
}

/// The value of a missing "type".
const Value kNoType = Value();

bool hasTypeWord(const Value& control, std::string_view word) {
  const Value& context = control[kContextKey];
  readObjectMembers(context);  // anything but an object is an error
  const Value* type = foundation::json::find_member(context, kTypeKey);
  return readString(type != nullptr ? *type : kNoType) == word;
}

/// Compares the type word of a generic control, and the class name of any other.
bool isControlOfType(const Value& control, const std::string& className, std::string_view word) {
  return className == kGenericControl ? hasTypeWord(control, word) : className == word;
}

}  // namespace

bool recognizeByClassName(const Value& json, std::string_view className) {
  const std::string* actual = classNameOf(json);
  return actual != nullptr && *actual == className;
}

bool recognizeByTypeWord(const Value& json, std::string_view typeWord) {
  const std::string* className = classNameOf(json);
  return className != nullptr && *className == kGenericControl && hasTypeWord(json, typeWord);
}

bool recognizeByTypeWordOrClassName(const Value& json, std::string_view word) {
  const std::string* className = classNameOf(json);
  return className != nullptr && isControlOfType(json, *className, word);
}

}  // namespace tessel::build::json::controls::framework
