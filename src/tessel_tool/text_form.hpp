#pragma once

/// @file
/// What the text forms of the subcommands have in common.

#include <cstddef>
#include <string>
#include <string_view>

namespace tessel_tool {

/// A class name without its namespace.
std::string_view shortName(std::string_view qualifiedName);

/// "1 error", "2 errors".
std::string counted(std::size_t count, std::string_view what);

/// A text with the escapes of `reference_host::json::appendVisible`, so that it stays on its line.
std::string visible(std::string_view text);

/// Appends a log record as an item of a list, behind "- "; further lines of it are indented.
void appendRecord(std::string& out, std::string_view record);

}  // namespace tessel_tool
