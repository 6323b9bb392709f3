#pragma once

/// @file
/// The logging library: the process-wide diagnostic logger.

#include <atomic>
#include <boost/log/attributes/attribute_set.hpp>
#include <boost/log/core/core.hpp>
#include <cstdint>
#include <utility>

#include "foundation/export.hpp"

#if defined(_WIN32)
#include <boost/winapi/srw_lock.hpp>
#else
#include <shared_mutex>
#endif

namespace foundation::log {

/// A slim reader/writer lock; meets the standard's Lockable for exclusive use.
class slim_lock {
 public:
#if defined(_WIN32)
  void lock() noexcept {
    boost::winapi::AcquireSRWLockExclusive(&lock_);
  }
  void unlock() noexcept {
    boost::winapi::ReleaseSRWLockExclusive(&lock_);
  }

 private:
  boost::winapi::SRWLOCK_ lock_ = BOOST_WINAPI_SRWLOCK_INIT;
#else
  void lock() {
    lock_.lock();
  }
  void unlock() noexcept {
    lock_.unlock();
  }

 private:
  std::shared_mutex lock_;
#endif
};

/// A Boost.Log source for diagnostic records. Its attribute set holds "Severity", which reads the
/// calling thread's severity slot. What it consists of is read through the four functions below.
template <typename Char>
class basic_diagnostic_logger {
 public:
  basic_diagnostic_logger(boost::log::core_ptr core, boost::log::attribute_set attributes)
      : core_(std::move(core)), attributes_(std::move(attributes)) {}
  basic_diagnostic_logger(const basic_diagnostic_logger&) = delete;
  basic_diagnostic_logger& operator=(const basic_diagnostic_logger&) = delete;

 private:
  template <typename C>
  friend slim_lock& lock(basic_diagnostic_logger<C>& logger) noexcept;
  template <typename C>
  friend const boost::log::core_ptr& core(const basic_diagnostic_logger<C>& logger) noexcept;
  template <typename C>
  friend const boost::log::attribute_set& attributes(
      const basic_diagnostic_logger<C>& logger) noexcept;
  template <typename C>
  friend std::atomic<std::uint32_t>& enabled_levels(basic_diagnostic_logger<C>& logger) noexcept;

  slim_lock lock_;
  boost::log::core_ptr core_;
  boost::log::attribute_set attributes_;
  std::atomic<std::uint32_t> enabledLevels_{0};
};

/// Held exclusively while the severity slot is set and a record is opened, and no longer.
template <typename Char>
slim_lock& lock(basic_diagnostic_logger<Char>& logger) noexcept {
  return logger.lock_;
}

template <typename Char>
const boost::log::core_ptr& core(const basic_diagnostic_logger<Char>& logger) noexcept {
  return logger.core_;
}

/// The attributes of every record of the logger.
template <typename Char>
const boost::log::attribute_set& attributes(const basic_diagnostic_logger<Char>& logger) noexcept {
  return logger.attributes_;
}

/// One bit a severity, whose value is the bit's mask: bit 3 enables severity 8. 0 at start, so that
/// diagnostics are off.
template <typename Char>
std::atomic<std::uint32_t>& enabled_levels(basic_diagnostic_logger<Char>& logger) noexcept {
  return logger.enabledLevels_;
}

}  // namespace foundation::log

namespace tessel::shared::logging {

/// The process-wide diagnostic logger.
TESSEL_HOST_API foundation::log::basic_diagnostic_logger<char>& getLogger();

}  // namespace tessel::shared::logging
