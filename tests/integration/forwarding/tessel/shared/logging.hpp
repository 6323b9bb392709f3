#pragma once

#include <atomic>
#include <cstdint>

#include "foreign/tessel/shared/logging.hpp"

namespace foundation::log {

inline slim_lock& lock(basic_diagnostic_logger<char>& logger) noexcept {
  return foreign_lock(logger);
}

inline const boost::log::core_ptr& core(const basic_diagnostic_logger<char>& logger) noexcept {
  return foreign_core(logger);
}

inline const boost::log::attribute_set& attributes(
    const basic_diagnostic_logger<char>& logger) noexcept {
  return foreign_attributes(logger);
}

inline std::atomic<std::uint32_t>& enabled_levels(basic_diagnostic_logger<char>& logger) noexcept {
  return foreign_enabled_levels(logger);
}

}  // namespace foundation::log
