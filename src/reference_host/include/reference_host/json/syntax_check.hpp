#pragma once

/// @file
/// The place and the reason of the first fault in a text.

#include <string_view>

#include "foundation/export.hpp"

namespace reference_host::json {

/// Returns when the text, which has no byte order mark, is one that `parse` accepts.
///
/// It is slower than parsing and builds no value; `parse` calls it once a text is refused, because
/// the parser library tells neither exact places nor reasons.
/// @throws ParseError for the first fault in the text.
TESSEL_HOST_API void checkSyntax(std::string_view utf8);

}  // namespace reference_host::json
