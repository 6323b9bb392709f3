#pragma once

/// @file
/// Stands in front of the bundle's own header of this name where the builders are compiled without
/// any log call, to show what the calls cost while diagnostics are off.

#include <string>
#include <string_view>
#include <type_traits>

namespace tessel::build::json::controls::framework {

inline bool mayRecordDiagnostics() noexcept {
  return false;
}
inline void logDiagnostic(std::string_view) noexcept {}

template <typename ProduceText,
          typename = std::enable_if_t<std::is_invocable_r_v<std::string, const ProduceText&>>>
void logDiagnostic(const ProduceText&) noexcept {}

}  // namespace tessel::build::json::controls::framework
