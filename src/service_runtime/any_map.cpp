#include <algorithm>

#include "cppmicroservices/AnyMap.h"

namespace cppmicroservices {
inline namespace embedded_v1 {

namespace {

unsigned char folded(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= 'A' && byte <= 'Z' ? static_cast<unsigned char>(byte + ('a' - 'A')) : byte;
}

detail::KeyLess keyLess(any_map::map_type type) {
  return {type == any_map::UNORDERED_MAP_CASEINSENSITIVE_KEYS};
}

}  // namespace

bool detail::KeyLess::operator()(const std::string& left, const std::string& right) const {
  if (!foldCase) return left < right;
  return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(),
                                      [](char a, char b) { return folded(a) < folded(b); });
}

AnyMap::AnyMap(std::initializer_list<value_type> values) : AnyMap(UNORDERED_MAP, values) {}

AnyMap::AnyMap(map_type type, std::initializer_list<value_type> values)
    : type_(type), values_(values.begin(), values.end(), keyLess(type)) {}

AnyMap::AnyMap(const ordered_any_map& values)
    : type_(ORDERED_MAP), values_(values.begin(), values.end(), keyLess(ORDERED_MAP)) {}

AnyMap::AnyMap(const unordered_any_map& values)
    : type_(UNORDERED_MAP), values_(values.begin(), values.end(), keyLess(UNORDERED_MAP)) {}

bool AnyMap::operator==(const AnyMap& other) const {
  return values_.size() == other.values_.size() &&
         std::equal(values_.begin(), values_.end(), other.values_.begin());
}

std::ostream& any_value_to_string(std::ostream& os, const AnyMap& values) {
  const char* separator = "{";
  if (values.empty()) os << separator;
  for (const auto& [name, value] : values) {
    os << separator << name << " : " << value.ToStringNoExcept();
    separator = ", ";
  }
  return os << "}";
}

std::ostream& any_value_to_json(std::ostream& os, const AnyMap& values) {
  const char* separator = "{";
  if (values.empty()) os << separator;
  for (const auto& [name, value] : values) {
    os << separator;
    detail::writeJsonText(os, name);
    os << ": " << value.ToJSON();
    separator = ", ";
  }
  return os << "}";
}

}  // namespace embedded_v1
}  // namespace cppmicroservices
