#include "framework/json_access.hpp"

#include <cstdint>
#include <stdexcept>

#include "fl/i18n.hpp"

namespace tessel::build::json::controls::framework {

namespace {

using foundation::json::get_if;
using foundation::json::traits;
using foundation::json::Value;

const Value kUndefined;

template <typename... Alternatives>
const char* nameOfHeldAmong(const Value& value) noexcept {
  const char* name = nullptr;
  ((get_if<Alternatives>(value) != nullptr ? void(name = traits<Alternatives>::name) : void()),
   ...);
  return name;
}

const char* nameOfHeld(const Value& value) noexcept {
  return nameOfHeldAmong<foundation::json::Undefined, foundation::json::Null, bool, double,
                         std::string, JsonArray, JsonMembers, float, std::int64_t, std::uint64_t>(
      value);
}

}  // namespace

void throwInvalidConversion(const Value& held, const char* requestedName) {
  throw std::runtime_error(std::string("invalid conversion: ") + nameOfHeld(held) + " to " +
                           requestedName);
}

const Value& memberOrUndefined(const JsonMembers& members, const std::string& key) {
  const Value* member = findMember(members, key);
  if (member != nullptr) return *member;
  return kUndefined;
}

const Value& memberOrUndefined(const Value& value, const std::string& key) {
  const Value* member = foundation::json::find_member(value, key);
  if (member != nullptr) return *member;
  return kUndefined;
}

template <>
std::u16string readAs<std::u16string>(const Value& value) {
  return fl::i18n::utf8_to_ustring(readString(value));
}

template <>
double readAs<double>(const Value& value) {
  return readDouble(value);
}

template <>
bool readAs<bool>(const Value& value) {
  return readBool(value);
}

}  // namespace tessel::build::json::controls::framework
