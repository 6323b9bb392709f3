#pragma once

/// @file
/// Strict typed reads: nothing is converted.

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/json.hpp"

namespace tessel::build::json::controls::framework {

using JsonArray = std::vector<foundation::json::Value>;
using JsonMembers = std::map<std::string, foundation::json::Value>;

/// @throws std::runtime_error "invalid conversion: A to B": the type name of the alternative held,
///         and the requested name.
[[noreturn]] void throwInvalidConversion(const foundation::json::Value& held,
                                         std::string_view requestedName);

/// Reads a value that holds exactly `Requested`. Numbers are neither widened nor narrowed: a
/// `float` or a 64-bit integer is no `double`.
/// @throws std::runtime_error "invalid conversion: A to B" with the type names of the alternative
///         held and of the one requested.
template <typename Requested>
struct StrictRead {
  const Requested& operator()(const foundation::json::Value& value) const {
    if (const auto* held = foundation::json::get_if<Requested>(value)) return *held;
    throwInvalidConversion(value, foundation::json::traits<Requested>::name);
  }
};

inline constexpr StrictRead<std::string> readString{};
inline constexpr StrictRead<double> readDouble{};
inline constexpr StrictRead<bool> readBool{};
inline constexpr StrictRead<JsonMembers> readObjectMembers{};
inline constexpr StrictRead<JsonArray> readArray{};

/// `readString` as UTF-16, which the model uses.
std::u16string readText(const foundation::json::Value& value);

/// A required member, in place. If it is missing, the host answers for it: by its non-const
/// `operator[]` on a copy of the holder.
/// @param copy is given that copy, if there is one; it may not be the holder.
/// @throws whatever the host throws for such a member.
const foundation::json::Value& requiredMember(const foundation::json::Value& holder,
                                              const std::string& key,
                                              foundation::json::Value& copy);

}  // namespace tessel::build::json::controls::framework
