#pragma once

/// @file
/// The manifest's builders, without a service runtime around them.

#include <string>
#include <vector>

#include "reference_host/importer/importer.hpp"

namespace test_support {

struct BuilderService {
  std::string name;  ///< of the builder's class, without namespaces
  reference_host::importer::NamedBuilder::Service service;
};

/// All of them, in the manifest's order, which is the order in which a host asks them.
const std::vector<BuilderService>& allBuilderServices();

/// The same, as an import takes them.
const std::vector<reference_host::importer::NamedBuilder>& allBuilders();

/// @throws std::invalid_argument when there is none of the name.
const reference_host::importer::NamedBuilder& builderOf(const std::string& name);

}  // namespace test_support
