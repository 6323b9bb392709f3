#pragma once

/// @file
/// What the text forms of the subcommands have in common.

#include <string>
#include <string_view>
#include <vector>

namespace tessel_tool {

/// A class name without its namespace.
std::string_view shortName(std::string_view qualifiedName);

/// A text with the escapes of `reference_host::json::appendVisible`, so that it stays on its line.
std::string visible(std::string_view text);

/// Appends log records as a list, one behind each "- "; further lines of a record are indented.
/// @param indent in front of each line.
void appendRecords(std::string& out, const std::vector<std::string>& records,
                   std::string_view indent);

}  // namespace tessel_tool
