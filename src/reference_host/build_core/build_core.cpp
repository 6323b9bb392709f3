#include "fl/i18n.hpp"
#include "tessel/build/json/core.hpp"

namespace tessel::build::json::core {

using foundation::json::Value;

bool has_className(const Value& json, std::string className) {
  static const std::string key = "className";
  const auto* const text = json[key].get_if<std::string>();
  return text != nullptr && *text == className;
}

std::u16string extract_anchor_id(const Value& json, const std::string& prefix) {
  const auto* const anchorId = json["anchorId"].get_if<std::string>();
  if (anchorId == nullptr) return {};
  const bool prefixed = anchorId->compare(0, prefix.size(), prefix) == 0;
  return fl::i18n::utf8_to_ustring(prefixed ? *anchorId : prefix + *anchorId);
}

}  // namespace tessel::build::json::core
