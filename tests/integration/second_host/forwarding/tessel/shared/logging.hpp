#pragma once

#include <cstdint>

#include "own/log.hpp"

namespace foundation::log {

inline auto lock(basic_diagnostic_logger<char>& logger) {
  return basic_diagnostic_logger<char>::Gate(logger);
}

inline boost::log::core_ptr core(const basic_diagnostic_logger<char>&) {
  return boost::log::core::get();
}

inline const boost::log::attribute_set& attributes(const basic_diagnostic_logger<char>& logger) {
  return logger.fields;
}

inline std::uint32_t& enabled_levels(basic_diagnostic_logger<char>& logger) {
  return logger.levels;
}

}  // namespace foundation::log
