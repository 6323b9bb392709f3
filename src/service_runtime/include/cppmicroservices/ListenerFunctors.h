#pragma once

/// @file
/// The types of listeners.

#include <functional>

namespace cppmicroservices {
inline namespace embedded_v1 {

class FrameworkEvent;

using FrameworkListener = std::function<void(const FrameworkEvent&)>;

}  // namespace embedded_v1
}  // namespace cppmicroservices
