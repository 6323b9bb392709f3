#include "cppmicroservices/Any.h"

#include <stdexcept>

#include "cppmicroservices/ServiceInterface.h"

namespace cppmicroservices {
inline namespace embedded_v1 {

std::string Any::ToString() const {
  if (!content_) throw std::logic_error("an empty Any has no text");
  return content_->toString();
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

}  // namespace detail

}  // namespace embedded_v1
}  // namespace cppmicroservices
