#include "literal_recognition.hpp"

#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>

#include "contract/kinds.hpp"
#include "framework/diagnostics.hpp"
#include "framework/json_access.hpp"
#include "support/all_builders.hpp"
#include "tessel/build/json/core.hpp"

namespace benchmarks {

namespace {

using foundation::json::Value;
using tessel::build::json::controls::framework::logDiagnostic;
using tessel::build::json::controls::framework::readObjectMembers;
using tessel::build::json::controls::framework::readString;
using MemberMap = std::map<std::string, Value>;

/// Copies the object's members.
bool convert(const Value& json, MemberMap& members) {
  try {
    members = readObjectMembers(json);
    return true;
  } catch (...) {
    logDiagnostic("Incoming JSON was not an Object");
    return false;
  }
}

bool hasTypeWord(const Value& json, std::string_view word) {
  MemberMap context = readObjectMembers(json["context"]);
  return readString(context["type"]) == word;
}

bool byClassName(const Value& json, std::string_view record, std::string_view className) {
  logDiagnostic(record);
  MemberMap members;
  if (!convert(json, members)) return false;
  if (members.find("className") == members.end()) return false;
  return readString(json["className"]) == className;
}

bool byTypeWord(const Value& json, std::string_view record, std::string_view word) {
  return byClassName(json, record, contract::kGenericControl) && hasTypeWord(json, word);
}

bool byTypeWordOrClassName(const Value& json, std::string_view record, std::string_view word) {
  logDiagnostic(record);
  MemberMap members;
  if (!convert(json, members)) return false;
  if (members.find("className") == members.end()) return false;
  const std::string& className = readString(json["className"]);
  return className == contract::kGenericControl ? hasTypeWord(json, word) : className == word;
}

bool byHost(const Value& json, std::string_view record, std::string_view className) {
  logDiagnostic(record);
  return tessel::build::json::core::has_className(json, std::string(className));
}

bool claims(const contract::Kind& kind, const Value& json) {
  switch (kind.rule) {
    case contract::Rule::kClassName:
      return byClassName(json, kind.asked, kind.word);
    case contract::Rule::kHostClassName:
      return byHost(json, kind.asked, kind.word);
    case contract::Rule::kTypeWord:
      return byTypeWord(json, kind.asked, kind.word);
    case contract::Rule::kTypeWordOrClassName:
      return byTypeWordOrClassName(json, kind.asked, kind.word);
  }
  throw std::logic_error("a rule of no kind");
}

}  // namespace

std::size_t recognizeLiterally(const Value& json) {
  std::size_t count = 0;
  for (const contract::Kind& kind : contract::kinds()) {
    if (claims(kind, json)) ++count;
  }
  return count;
}

std::size_t recognize(const Value& json) {
  std::size_t claims = 0;
  for (const test_support::BuilderService& each : test_support::allBuilderServices()) {
    const auto ask = [&json](const auto& builder) { return builder->canBuild(json); };
    if (std::visit(ask, each.service)) ++claims;
  }
  return claims;
}

}  // namespace benchmarks
