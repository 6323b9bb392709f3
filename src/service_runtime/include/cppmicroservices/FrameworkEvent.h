#pragma once

/// @file
/// What a framework tells its listeners.

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

namespace cppmicroservices {
inline namespace embedded_v1 {

/// A message of a framework: that it has started or stopped, or what is wrong with a bundle or with
/// one of its components.
class FrameworkEvent {
 public:
  enum Type : std::uint32_t {
    FRAMEWORK_STARTED = 0x001,
    FRAMEWORK_ERROR = 0x002,
    FRAMEWORK_WARNING = 0x010,
    FRAMEWORK_STOPPED = 0x040,
    FRAMEWORK_WAIT_TIMEDOUT = 0x200
  };

  FrameworkEvent(Type type, std::string message) : type_(type), message_(std::move(message)) {}

  Type GetType() const { return type_; }
  /// For a component's problem: `bundle NAME, component NAME: what is wrong`.
  std::string GetMessage() const { return message_; }

 private:
  Type type_;
  std::string message_;
};

using FrameworkListener = std::function<void(const FrameworkEvent&)>;

}  // namespace embedded_v1
}  // namespace cppmicroservices
