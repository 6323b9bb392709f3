#include "framework/json_access.hpp"

#include <cstdint>
#include <stdexcept>

#include "fl/i18n.hpp"

namespace tessel::build::json::controls::framework {

namespace {

using foundation::json::get_if;
using foundation::json::traits;
using foundation::json::Value;

template <typename... Alternatives>
std::string nameOfHeldAmong(const Value& value) {
  std::string name;
  ((get_if<Alternatives>(value) != nullptr ? void(name = traits<Alternatives>::name) : void()),
   ...);
  return name;
}

std::string nameOfHeld(const Value& value) {
  return nameOfHeldAmong<foundation::json::Undefined, foundation::json::Null, bool, double,
                         std::string, JsonArray, JsonMembers, float, std::int64_t, std::uint64_t>(
      value);
}

}  // namespace

void throwInvalidConversion(const Value& held, std::string_view requestedName) {
  throw std::runtime_error(
      ("invalid conversion: " + nameOfHeld(held) + " to ").append(requestedName));
}

const Value& requiredMember(const Value& holder, const std::string& key, Value& copy) {
  if (const Value* member = foundation::json::find_member(holder, key)) return *member;
  copy = holder;
  return copy[key.c_str()];
}

std::u16string readText(const Value& value) {
  return fl::i18n::utf8_to_ustring(readString(value));
}

}  // namespace tessel::build::json::controls::framework
