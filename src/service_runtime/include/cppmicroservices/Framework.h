#pragma once

/// @file
/// A framework: the bundles of one service runtime and what holds them together.

#include <chrono>

#include "cppmicroservices/Bundle.h"
#include "cppmicroservices/FrameworkConfig.h"

namespace cppmicroservices {
inline namespace embedded_v1 {

class FrameworkEvent;

/// The handle of a framework, which is a bundle itself, number 0. The last handle of a framework,
/// or of one of its bundles, stops it when it goes.
///
/// `Start` initialises the framework if need be. `Stop` stops and uninstalls all bundles, the last
/// installed first, and returns when that is done; the framework can be started again and then has
/// no bundles. `Uninstall` throws std::runtime_error.
class US_Framework_EXPORT Framework : public Bundle {
 public:
  /// Makes the framework ready for installing bundles: from now on `GetBundleContext` gives a valid
  /// context. No effect if it is that already.
  void Init();

  /// Waits until the framework is stopped; a timeout of zero waits for ever.
  /// @return an event of type FRAMEWORK_STOPPED, or FRAMEWORK_WAIT_TIMEDOUT
  FrameworkEvent WaitForStop(const std::chrono::milliseconds& timeout);

 private:
  friend class FrameworkFactory;
  using Bundle::Bundle;
};

}  // namespace embedded_v1
}  // namespace cppmicroservices
