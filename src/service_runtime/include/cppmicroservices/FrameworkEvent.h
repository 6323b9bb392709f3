#pragma once

/// @file
/// What a framework tells its listeners.

#include <cstdint>
#include <exception>
#include <iosfwd>
#include <string>

#include "cppmicroservices/Bundle.h"

namespace cppmicroservices {
inline namespace embedded_v1 {

/// A message of a framework: that it has started or stopped, or what is wrong with a bundle or with
/// one of its components.
class US_Framework_EXPORT FrameworkEvent {
 public:
  enum Type : std::uint32_t {
    FRAMEWORK_STARTED = 0x001,
    FRAMEWORK_ERROR = 0x002,
    FRAMEWORK_WARNING = 0x010,
    FRAMEWORK_INFO = 0x020,
    FRAMEWORK_STOPPED = 0x040,
    FRAMEWORK_STOPPED_UPDATE = 0x080,
    FRAMEWORK_WAIT_TIMEDOUT = 0x200
  };

  /// An empty event.
  FrameworkEvent() = default;
  FrameworkEvent(Type type, const Bundle& bundle, std::string message,
                 std::exception_ptr exception = nullptr);

  /// False for an empty event.
  explicit operator bool() const { return type_ != 0; }

  /// @throws std::runtime_error for an empty event
  Type GetType() const;
  /// The bundle the message is about; the framework itself where it is about no other.
  Bundle GetBundle() const { return bundle_; }
  /// For a component's problem: `bundle NAME, component NAME: what is wrong`.
  std::string GetMessage() const { return message_; }
  /// The message as an exception of the runtime's own, or null where the event is no problem.
  std::exception_ptr GetThrowable() const { return exception_; }

 private:
  std::uint32_t type_ = 0;
  Bundle bundle_;
  std::string message_;
  std::exception_ptr exception_;
};

/// Writes the type's word, for example `ERROR`.
US_Framework_EXPORT std::ostream& operator<<(std::ostream& os, FrameworkEvent::Type type);
/// Writes type and message.
US_Framework_EXPORT std::ostream& operator<<(std::ostream& os, const FrameworkEvent& event);

}  // namespace embedded_v1
}  // namespace cppmicroservices
