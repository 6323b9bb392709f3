#pragma once

/// @file
/// The service runtime with the bundle in it, and the builders that the bundle publishes.

#include <filesystem>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "reference_host/importer/importer.hpp"

namespace tessel_tool {

/// The bundle cannot be loaded or used. `what()` is "path: reason".
class BundleError : public std::runtime_error {
 public:
  BundleError(const std::filesystem::path& bundle, const std::string& reason);
};

/// A component of the bundle.
struct ComponentDescription {
  std::string name;
  std::vector<std::string> interfaces;
  std::map<std::string, std::string> properties;  ///< from the manifest; values as JSON text
};

/// What a component that is not published waits for.
struct MissingReference {
  std::string name;
  std::string interface;
  std::string target;  ///< the filter that a service has to match; empty if any will do
};

struct WaitingComponent {
  ComponentDescription component;
  std::vector<MissingReference> waitsFor;
};

/// Starts the service runtime, installs and starts the bundle, and stops everything at the end.
class BuilderServices {
 public:
  /// @throws BundleError
  explicit BuilderServices(const std::filesystem::path& bundle);
  ~BuilderServices();
  BuilderServices(const BuilderServices&) = delete;
  BuilderServices& operator=(const BuilderServices&) = delete;

  /// The published builders of both interfaces, in the order of the manifest, each named like its
  /// component. The components' instances are made now.
  /// @throws BundleError when there are none, or one cannot be had.
  const std::vector<reference_host::importer::NamedBuilder>& builders();

  /// The components that are published as builders, in the order of the manifest.
  std::vector<ComponentDescription> published() const;
  /// The components of the bundle that are not published, in the order of the manifest.
  std::vector<WaitingComponent> waiting() const;

  /// The bundle's symbolic name.
  std::string bundleName() const;

  /// Releases the builders and stops the runtime. The destructor does the same but tells nobody
  /// when that fails.
  /// @throws BundleError
  void close();

 private:
  class Runtime;

  /// @throws BundleError when the runtime has reported an error.
  void throwIfFailed();

  std::filesystem::path path_;
  std::unique_ptr<Runtime> runtime_;
  std::vector<reference_host::importer::NamedBuilder> builders_;
};

}  // namespace tessel_tool
