#include <algorithm>
#include <string_view>

#include "fl/i18n.hpp"
#include "tessel/build/json/core.hpp"

namespace tessel::build::json::core {

using foundation::json::Value;

namespace {

constexpr std::string_view kClassName = "className";

}  // namespace

bool has_className(const Value& json, std::string className) {
  const auto* const members = json.get_if<Value::Object>();
  if (members == nullptr) return false;
  // In key order it stands among the first members of nearly every object: sooner than a search.
  const auto member = std::find_if(members->begin(), members->end(),
                                   [](const auto& each) { return each.first == kClassName; });
  if (member == members->end()) return false;
  const auto* const text = member->second.get_if<std::string>();
  return text != nullptr && *text == className;
}

std::u16string extract_anchor_id(const Value& json, const std::string& prefix) {
  const auto* const anchorId = json["anchorId"].get_if<std::string>();
  if (anchorId == nullptr) return {};
  const bool prefixed = anchorId->compare(0, prefix.size(), prefix) == 0;
  return fl::i18n::utf8_to_ustring(prefixed ? *anchorId : prefix + *anchorId);
}

}  // namespace tessel::build::json::core
