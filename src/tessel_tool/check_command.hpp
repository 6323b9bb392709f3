#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "builder_services.hpp"
#include "exit_status.hpp"

namespace tessel_tool {

struct CheckOptions {
  enum class Format { kText, kJson, kSarif };

  std::vector<std::string> files;
  std::vector<std::string>
      wordFiles;  ///< files of candidates for the words of builders, one a line
  Format format = Format::kText;
  bool ndjson = false;
  bool noWarnings = false;
  bool strict = false;  ///< a warning fails, too
  std::size_t jobs = 1;
  std::size_t firstLine = 1;  ///< its number, with ndjson
};

/// Tells the problems of documents on standard output.
/// @throws BundleError, OutputError
ExitStatus runCheck(BuilderServices& services, const CheckOptions& options);

}  // namespace tessel_tool
