#pragma once

/// @file
/// What the targets share that hand bytes to the embedded runtime as a bundle.

#include <link.h>

#include <stdexcept>
#include <string>

#include "bundle_file/bundle_file.hpp"
#include "bundle_file/manifest.hpp"
#include "check.hpp"
#include "support/file_builder.hpp"

namespace fuzz {

/// How many libraries this process has loaded so far.
inline unsigned long long loadedLibraries() {
  unsigned long long count = 0;
  dl_iterate_phdr(
      [](dl_phdr_info* info, std::size_t, void* result) {
        *static_cast<unsigned long long*>(result) = info->dlpi_adds;
        return 1;
      },
      &count);
  return count;
}

/// Reads the bytes as a bundle. Holds the reader to this: only a `std::runtime_error` with a text
/// leaves it, nothing is loaded, and what a manifest says is complete and the same when its text is
/// read again.
inline void readAsBundle(const std::string& bytes) {
  namespace detail = cppmicroservices::detail;
  const auto loaded = loadedLibraries();
  try {
    const service_runtime_test::MemoryFile file(bytes);
    const detail::BundleFile bundle = detail::readBundleFile(file.path());
    const detail::BundleManifest again = detail::parseManifest(bundle.manifestText);
    require(bundle.manifest.symbolicName == again.symbolicName &&
                bundle.manifest.components.size() == again.components.size(),
            "a manifest reads the same twice");
    require(!bundle.manifest.symbolicName.empty(), "a bundle has a name");
    for (const detail::ComponentDescription& component : bundle.manifest.components) {
      require(!component.name.empty(), "a component has a name");
      require(!component.implementationClass.empty(), "a component has a class");
      require(!component.interfaces.empty(), "a component has an interface");
      for (const detail::ReferenceDescription& reference : component.references) {
        require(!reference.name.empty() && !reference.interfaceName.empty(),
                "a reference has a name and an interface");
        reference.filter.matches(component.properties);
      }
    }
  } catch (const std::runtime_error& error) {
    require(*error.what() != '\0', "a refusal says why");
  }
  require(loadedLibraries() == loaded, "nothing is loaded");
}

}  // namespace fuzz
