#pragma once

/// @file
/// What may have been meant where a text is no JSON.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/export.hpp"
#include "reference_host/json/parse.hpp"

namespace reference_host::diagnosis {

/// What to write where a text was refused; nothing where that cannot be told.
/// @param text the one that was refused, without a byte order mark.
/// @param firstLine what the error, and the hint, count its first line as.
TESSEL_HOST_API std::optional<std::string> hintForSyntax(std::string_view text,
                                                         const json::ParseError& error,
                                                         std::size_t firstLine = 1);

}  // namespace reference_host::diagnosis
