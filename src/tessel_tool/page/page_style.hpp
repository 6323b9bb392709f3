#pragma once

#include <string_view>

namespace tessel_tool {

/// The style sheet of a page.
extern const std::string_view kPageStyle;

}  // namespace tessel_tool
