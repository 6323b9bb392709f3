#include "cppmicroservices/FrameworkEvent.h"

#include <ostream>
#include <stdexcept>
#include <utility>

namespace cppmicroservices {
inline namespace embedded_v1 {

FrameworkEvent::FrameworkEvent(Type type, const Bundle& bundle, std::string message,
                               std::exception_ptr exception)
    : type_(type),
      bundle_(bundle),
      message_(std::move(message)),
      exception_(std::move(exception)) {}

FrameworkEvent::Type FrameworkEvent::GetType() const {
  if (type_ == 0) throw std::runtime_error("an empty framework event has no type");
  return static_cast<Type>(type_);
}

std::ostream& operator<<(std::ostream& os, FrameworkEvent::Type type) {
  switch (type) {
    case FrameworkEvent::FRAMEWORK_STARTED:
      return os << "STARTED";
    case FrameworkEvent::FRAMEWORK_ERROR:
      return os << "ERROR";
    case FrameworkEvent::FRAMEWORK_WARNING:
      return os << "WARNING";
    case FrameworkEvent::FRAMEWORK_INFO:
      return os << "INFO";
    case FrameworkEvent::FRAMEWORK_STOPPED:
      return os << "STOPPED";
    case FrameworkEvent::FRAMEWORK_STOPPED_UPDATE:
      return os << "STOPPED_UPDATE";
    case FrameworkEvent::FRAMEWORK_WAIT_TIMEDOUT:
      return os << "WAIT_TIMEDOUT";
  }
  return os << "unknown";
}

std::ostream& operator<<(std::ostream& os, const FrameworkEvent& event) {
  if (!event) return os << "no event";
  return os << event.GetType() << ": " << event.GetMessage();
}

}  // namespace embedded_v1
}  // namespace cppmicroservices
