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

template <typename Requested>
const Requested& readStrictly(const Value& value) {
  if (const Requested* held = get_if<Requested>(value)) return *held;
  throw std::runtime_error(std::string("invalid conversion: ") + nameOfHeld(value) + " to " +
                           traits<Requested>::name);
}

}  // namespace

const std::string& readString(const Value& value) {
  return readStrictly<std::string>(value);
}

double readDouble(const Value& value) {
  return readStrictly<double>(value);
}

bool readBool(const Value& value) {
  return readStrictly<bool>(value);
}

const JsonMembers& readObjectMembers(const Value& value) {
  return readStrictly<JsonMembers>(value);
}

const JsonArray& readArray(const Value& value) {
  return readStrictly<JsonArray>(value);
}

const Value& memberOrUndefined(const JsonMembers& members, const std::string& key) {
  const auto member = members.find(key);
  return member == members.end() ? kUndefined : member->second;
}

const Value& memberOrUndefined(const Value& value, const std::string& key) {
  return value.hasOwnProperty(key) ? value[key] : kUndefined;
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
