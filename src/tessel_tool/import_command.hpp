#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "builder_services.hpp"
#include "exit_status.hpp"

namespace tessel_tool {

struct ImportOptions {
  std::vector<std::string> files;
  bool json = false;
  bool log = false;
  bool ndjson = false;
  bool failFast = false;
  std::size_t jobs = 1;
  std::size_t firstLine = 1;  ///< its number, with ndjson
};

/// Imports documents and writes what became of each to standard output.
/// @throws BundleError, OutputError
ExitStatus runImport(BuilderServices& services, const ImportOptions& options);

}  // namespace tessel_tool
