#pragma once

/// @file
/// Words that builders may compare with, and that their own names do not suggest: the texts under
/// "className", "type" and "valueType". They cannot be seen from outside, so each is tried; one
/// that no builder reacts to does no harm.

#include <optional>
#include <string>
#include <vector>

namespace tessel_tool {

inline std::vector<std::string> knownWords() {
  return {"LumoControlNode", "comboBox", "LumoAppIntegratedInlineNode", "LumoAppLineNode",
          "Double"};
}

/// The words of the tool and those of the files, one a line; nothing if a file cannot be read,
/// which is complained of.
std::optional<std::vector<std::string>> wordsWith(const std::vector<std::string>& files);

}  // namespace tessel_tool
