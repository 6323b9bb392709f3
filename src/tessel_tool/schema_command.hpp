#pragma once

#include <string>
#include <vector>

#include "builder_services.hpp"
#include "exit_status.hpp"

namespace tessel_tool {

struct SchemaOptions {
  std::vector<std::string> wordFiles;  ///< files of words that the builders may compare with
  bool strict = false;                 ///< refuse what no builder knows
};

/// Writes a JSON Schema of documents to standard output.
/// @throws BundleError, OutputError
ExitStatus runSchema(BuilderServices& services, const SchemaOptions& options);

}  // namespace tessel_tool
