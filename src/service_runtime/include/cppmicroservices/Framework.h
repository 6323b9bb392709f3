#pragma once

/// @file
/// A framework: the bundles of one service runtime and what holds them together.

#include <chrono>

#include "cppmicroservices/Bundle.h"

namespace cppmicroservices {
inline namespace embedded_v1 {

class FrameworkEvent;

/// The handle of a framework, which is a bundle itself. The last handle of a framework, or of one
/// of its bundles, stops it when it goes.
///
/// `Start` gives it a context, through which bundles are installed. `Stop` stops and uninstalls all
/// bundles, the last installed first, and returns when that is done; the framework can be started
/// again and then has no bundles. `Uninstall` throws std::runtime_error.
class US_ABI_EXPORT Framework : public Bundle {
 public:
  /// Waits until the framework is stopped; a timeout of zero waits for ever.
  /// @return an event of type FRAMEWORK_STOPPED, or FRAMEWORK_WAIT_TIMEDOUT
  FrameworkEvent WaitForStop(const std::chrono::milliseconds& timeout);

 private:
  friend class FrameworkFactory;
  using Bundle::Bundle;
};

}  // namespace embedded_v1
}  // namespace cppmicroservices
