#include "cppmicroservices/Any.h"

#include <algorithm>
#include <stdexcept>

#include "cppmicroservices/AnyMap.h"
#include "cppmicroservices/ServiceInterface.h"

namespace cppmicroservices {
inline namespace embedded_v1 {

std::string Any::ToString() const {
  if (Empty()) throw std::logic_error("an empty Any has no text");
  return ToStringNoExcept();
}

namespace detail {

void writeJsonText(std::ostream& os, const std::string& text) {
  static constexpr char kHexDigits[] = "0123456789abcdef";
  os << '"';
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      os << '\\' << c;
    } else if (byte < 0x20) {
      os << "\\u00" << kHexDigits[byte >> 4U] << kHexDigits[byte & 0xFU];
    } else {
      os << c;
    }
  }
  os << '"';
}

void throwBadAnyCast(const std::type_info& held, const std::type_info& wanted) {
  throw BadAnyCastException("bad any cast: the value is " + demangledName(held) + ", not " +
                            demangledName(wanted));
}

bool LessWithoutCase::operator()(const std::string& left, const std::string& right) const {
  const auto folded = [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 'A' && byte <= 'Z' ? static_cast<unsigned char>(byte + ('a' - 'A')) : byte;
  };
  return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(),
                                      [&](char a, char b) { return folded(a) < folded(b); });
}

}  // namespace detail

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
