#pragma once

/// @file
/// The handle of an installed bundle.

#include <cstdint>
#include <memory>
#include <string>

#include "cppmicroservices/GlobalConfig.h"

namespace cppmicroservices {
inline namespace embedded_v1 {

class BundleContext;
class BundlePrivate;
class CoreBundleContext;

/// A handle of an installed bundle: a shared library with a manifest that describes the service
/// components in it. Copies stand for the same bundle. A handle keeps its framework alive.
///
/// Every operation of an empty handle throws std::invalid_argument.
class US_ABI_EXPORT Bundle {
 public:
  enum State : std::uint32_t {
    STATE_UNINSTALLED = 0x01,
    STATE_INSTALLED = 0x02,
    STATE_RESOLVED = 0x04,
    STATE_STARTING = 0x08,
    STATE_STOPPING = 0x10,
    STATE_ACTIVE = 0x20
  };

  Bundle() = default;

  /// True if the handle is not empty.
  explicit operator bool() const { return d != nullptr; }
  bool operator==(const Bundle& other) const { return d == other.d; }
  bool operator!=(const Bundle& other) const { return d != other.d; }

  State GetState() const;
  std::string GetSymbolicName() const;
  /// The bundle's context; empty while the bundle is not started.
  BundleContext GetBundleContext() const;

  /// Loads the library, hands it its context and publishes its components as far as what they refer
  /// to is there. What is wrong with one component is told by a framework event; the others are
  /// served. Starting a bundle that is started has no effect.
  /// @throws std::runtime_error if the file is not the one installed any more or cannot be loaded;
  ///         the text begins with the location that the bundle was installed from
  /// @throws std::logic_error if the bundle is uninstalled, or is just being started or stopped by
  ///         the calling thread
  void Start();
  /// Takes the bundle's services back, releases its components and takes its context away. The
  /// library stays loaded. Stopping a bundle that is not started has no effect.
  /// @throws std::logic_error as `Start`
  void Stop();
  /// Stops the bundle if it is started and forgets it. The library is unloaded when the last of its
  /// objects that somebody still holds has gone.
  /// @throws std::logic_error as `Start`
  /// @throws std::runtime_error for a framework, which cannot be uninstalled
  void Uninstall();

 protected:
  friend class CoreBundleContext;
  Bundle(std::shared_ptr<BundlePrivate> bundle, std::shared_ptr<CoreBundleContext> core);

  std::shared_ptr<BundlePrivate> d;
  std::shared_ptr<CoreBundleContext> c;
};

}  // namespace embedded_v1
}  // namespace cppmicroservices
