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

/// A read of one type: what the value holds if that is exactly `Requested`. Numbers are neither
/// widened nor narrowed: a `float` or a 64-bit integer is no `double`.
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

/// `readString`, as UTF-16: the text of the model.
std::u16string readText(const foundation::json::Value& value);

/// A member that has to be there. One that is there is read in place; one that is not is the host's
/// to answer for, by its non-const `operator[]` on a copy of the holder.
/// @param copy takes that copy, if there is one; it may not be the holder.
/// @throws whatever the host throws for such a member.
const foundation::json::Value& requiredMember(const foundation::json::Value& holder,
                                              const std::string& key,
                                              foundation::json::Value& copy);

}  // namespace tessel::build::json::controls::framework
