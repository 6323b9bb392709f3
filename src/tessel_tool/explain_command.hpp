#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "builder_services.hpp"
#include "exit_status.hpp"

namespace tessel_tool {

struct ExplainOptions {
  std::optional<std::string> file;  ///< none for standard input
  std::string pointer;              ///< of the value in the document; well-formed
  bool json = false;
  bool ndjson = false;
  bool all = false;           ///< list the builders that say no, too
  std::size_t firstLine = 1;  ///< its number, with ndjson
};

/// Says on standard output what each builder makes of a JSON value.
/// @throws BundleError, OutputError
ExitStatus runExplain(BuilderServices& services, const ExplainOptions& options);

}  // namespace tessel_tool
