#pragma once

/// @file
/// Strict typed reads: a value is what it holds, or the read fails.

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/json.hpp"

namespace tessel::build::json::controls::framework {

using JsonArray = std::vector<foundation::json::Value>;
using JsonMembers = std::map<std::string, foundation::json::Value>;

/// @throws std::runtime_error "invalid conversion: A to B" with the name of the alternative that is
///         held and the one given.
[[noreturn]] void throwInvalidConversion(const foundation::json::Value& held,
                                         std::string_view requestedName);

template <typename Requested>
const Requested& readStrictly(const foundation::json::Value& value) {
  if (const auto* held = foundation::json::get_if<Requested>(value)) return *held;
  throwInvalidConversion(value, foundation::json::traits<Requested>::name);
}

/// Each read returns the held alternative if it is exactly the requested one. Numbers are neither
/// widened nor narrowed: a `float` or a 64-bit integer is no `double`.
/// @throws std::runtime_error "invalid conversion: A to B" with the type names of the alternative
///         held and of the one requested.
inline const std::string& readString(const foundation::json::Value& value) {
  return readStrictly<std::string>(value);
}
inline double readDouble(const foundation::json::Value& value) {
  return readStrictly<double>(value);
}
inline bool readBool(const foundation::json::Value& value) {
  return readStrictly<bool>(value);
}
inline const JsonMembers& readObjectMembers(const foundation::json::Value& value) {
  return readStrictly<JsonMembers>(value);
}
inline const JsonArray& readArray(const foundation::json::Value& value) {
  return readStrictly<JsonArray>(value);
}

/// The member under the key; null when there is none. (Of a value, the host finds a member.)
inline const foundation::json::Value* findMember(const JsonMembers& members,
                                                 const std::string& key) {
  const auto member = members.find(key);
  return member == members.end() ? nullptr : &member->second;
}

/// A member that has to be there. One that is there is read in place; one that is not is the host's
/// to answer for, by its non-const `operator[]` on a copy of the holder.
/// @param copy takes that copy, if there is one; it may not be the holder.
/// @throws whatever the host throws for such a member.
const foundation::json::Value& requiredMember(const foundation::json::Value& holder,
                                              const std::string& key,
                                              foundation::json::Value& copy);

/// The value as a model setter takes it: text as UTF-16, a number, or a flag. Read strictly.
template <typename ModelType>
ModelType readAs(const foundation::json::Value& value) = delete;
template <>
std::u16string readAs<std::u16string>(const foundation::json::Value& value);
template <>
double readAs<double>(const foundation::json::Value& value);
template <>
bool readAs<bool>(const foundation::json::Value& value);

}  // namespace tessel::build::json::controls::framework
