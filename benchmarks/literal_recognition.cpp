#include "literal_recognition.hpp"

#include <map>
#include <string>
#include <string_view>
#include <variant>

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

constexpr std::string_view kGenericControl = "LumoControlNode";

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
  return byClassName(json, record, kGenericControl) && hasTypeWord(json, word);
}

bool byTypeWordOrClassName(const Value& json, std::string_view record, std::string_view word) {
  logDiagnostic(record);
  MemberMap members;
  if (!convert(json, members)) return false;
  if (members.find("className") == members.end()) return false;
  const std::string& className = readString(json["className"]);
  return className == kGenericControl ? hasTypeWord(json, word) : className == word;
}

bool byHost(const Value& json, std::string_view record, std::string_view className) {
  logDiagnostic(record);
  return tessel::build::json::core::has_className(json, std::string(className));
}

struct Question {
  bool (*ask)(const Value& json, std::string_view record, std::string_view word);
  std::string_view record;
  std::string_view word;
};

constexpr Question kQuestions[] = {
    {byTypeWordOrClassName, "Checking if can build Button", "button"},
    {byTypeWord, "Checking if can build CheckBox", "checkBox"},
    {byClassName, "Checking if can build ColorPicker", "ColorPickerControlNode"},
    {byTypeWord, "Checking if can build ComboBox", "comboBox"},
    {byHost, "Checking if can build DatePicker", "DatePickerControlNode"},
    {byTypeWord, "Checking if can build ComboBox", "editField"},
    {byClassName, "Checking if can build FileBrowser", "FileBrowserControlNode"},
    {byHost, "Checking if can build LumoAppLineNode", "LumoAppLineNode"},
    {byClassName, "Checking if can build LumoAppIntegratedInline", "LumoAppIntegratedInlineNode"},
    {byClassName, "Checking if can build RangeSliderNode", "RangeSliderControlNode"},
    {byTypeWord, "Checking if can build SliderNode", "slider"},
    {byClassName, "Checking if can build SpinnerNode", "SpinnerControlNode"},
    {byClassName, "Checking if can build StateButton", "StateButtonControlNode"}};

}  // namespace

std::size_t recognizeLiterally(const Value& json) {
  std::size_t claims = 0;
  for (const Question& question : kQuestions) {
    if (question.ask(json, question.record, question.word)) ++claims;
  }
  return claims;
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
