#include "framework/recognition.hpp"

#include <string>

#include "framework/diagnostics.hpp"
#include "framework/json_access.hpp"
#include "framework/json_keys.hpp"

namespace tessel::build::json::controls::framework {

namespace {

using foundation::json::Value;

constexpr std::string_view kGenericControl = "LumoControlNode";
// Compared with a text that the compiler knows, which needs no call; searched for as the map asks.
constexpr std::string_view kClassName = "className";
const std::string kClassNameKey(kClassName);

/// The object's members, or null with a record.
const JsonMembers* membersOf(const Value& json) {
  const auto* members = foundation::json::get_if<JsonMembers>(json);
  if (members == nullptr) logDiagnostic("Incoming JSON was not an Object");
  return members;
}

/// The member "className". In the order of the keys it stands among the first ones of nearly every
/// object, where a few looks find it sooner than a search.
const Value* findClassName(const JsonMembers& members) {
  constexpr int kFirstLooks = 3;
  auto member = members.begin();
  for (int look = 0; look < kFirstLooks && member != members.end(); ++look, ++member) {
    if (member->first == kClassName) return &member->second;
  }
  return findMember(members, kClassNameKey);
}

/// The object's class name; null when there is none or the value is no object.
const std::string* classNameOf(const JsonMembers* members) {
  const Value* className = members == nullptr ? nullptr : findClassName(*members);
  return className == nullptr ? nullptr : &readString(*className);
}

/// What a "type" that is not there reads as.
const Value kNoType = Value();

bool hasTypeWord(const Value& control, std::string_view word) {
  const Value& context = control[kContextKey];
  const Value* type = findMember(readObjectMembers(context), kTypeKey);
  return readString(type != nullptr ? *type : kNoType) == word;
}

/// Whether a control is of a type: a generic one by its type word, any other by its class name.
bool isControlOfType(const Value& control, const std::string& className, std::string_view word) {
  return className == kGenericControl ? hasTypeWord(control, word) : className == word;
}

}  // namespace

bool recognizeByClassName(const Value& json, std::string_view className) {
  const std::string* actual = classNameOf(membersOf(json));
  return actual != nullptr && *actual == className;
}

bool recognizeByTypeWord(const Value& json, std::string_view typeWord) {
  const std::string* className = classNameOf(membersOf(json));
  return className != nullptr && *className == kGenericControl && hasTypeWord(json, typeWord);
}

bool recognizeByTypeWordOrClassName(const Value& json, std::string_view word) {
  const std::string* className = classNameOf(membersOf(json));
  return className != nullptr && isControlOfType(json, *className, word);
}

}  // namespace tessel::build::json::controls::framework
