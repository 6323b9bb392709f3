#pragma once

/// @file
/// The thirteen builders, without a service runtime around them.

#include <vector>

#include "reference_host/importer/importer.hpp"

namespace fuzz {

/// All of them, in the manifest's order, under their class names without namespaces.
const std::vector<reference_host::importer::NamedBuilder>& allBuilders();

}  // namespace fuzz
