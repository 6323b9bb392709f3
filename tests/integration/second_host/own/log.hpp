#pragma once

/// @file
/// The logger of the second host: a plain level word, and a lock that is handed out by value.

#include <boost/log/attributes/attribute_set.hpp>
#include <boost/log/core/core.hpp>
#include <cstdint>

namespace foundation::log {

template <typename Char>
struct basic_diagnostic_logger {
  /// Counts how often the logger is locked, which one thread alone uses.
  class Gate {
   public:
    explicit Gate(basic_diagnostic_logger& logger) : logger_(logger) {}
    void lock() { ++logger_.timesLocked; }
    void unlock() {}

   private:
    basic_diagnostic_logger& logger_;
  };

  int timesLocked = 0;
  boost::log::attribute_set fields;
  std::uint32_t levels = 0;
};

}  // namespace foundation::log

namespace tessel::shared::logging {

inline foundation::log::basic_diagnostic_logger<char>& getLogger() {
  static foundation::log::basic_diagnostic_logger<char> logger;
  return logger;
}

}  // namespace tessel::shared::logging
