#include <string_view>

#include "fl/i18n.hpp"
#include "tessel/build/json/core.hpp"

namespace tessel::build::json::core {

using foundation::json::Value;

namespace {

constexpr std::string_view kClassNameKey = "className";

/// The member "className"; null when there is none or the value is no object. In the order of the
/// keys it stands among the first ones of nearly every object, where going along finds it sooner
/// than a search.
const Value* findClassName(const Value& json) {
  const auto* const members = json.get_if<Value::Object>();
  if (members == nullptr) return nullptr;
  for (const auto& [key, member] : *members) {
    if (key == kClassNameKey) return &member;
    if (key > kClassNameKey) break;
  }
  return nullptr;
}

}  // namespace

bool has_className(const Value& json, std::string className) {
  const Value* const member = findClassName(json);
  const auto* const text = member == nullptr ? nullptr : member->get_if<std::string>();
  return text != nullptr && *text == className;
}

std::u16string extract_anchor_id(const Value& json, const std::string& prefix) {
  const auto* const anchorId = json["anchorId"].get_if<std::string>();
  if (anchorId == nullptr) return {};
  const bool prefixed = anchorId->compare(0, prefix.size(), prefix) == 0;
  return fl::i18n::utf8_to_ustring(prefixed ? *anchorId : prefix + *anchorId);
}

}  // namespace tessel::build::json::core
