#include "nearest_name.hpp"

#include <algorithm>
#include <cstddef>

#include "reference_host/diagnosis/wording.hpp"

namespace tessel_tool {

std::string_view nearestName(std::string_view word, const std::vector<std::string_view>& names) {
  std::string_view nearest;
  std::size_t fewest = 0;
  for (const std::string_view name : names) {
    const std::size_t edits = reference_host::diagnosis::editDistance(word, name);
    if (2 * edits > std::max(word.size(), name.size())) continue;
    if (!nearest.empty() && edits >= fewest) continue;
    nearest = name;
    fewest = edits;
  }
  return nearest;
}

}  // namespace tessel_tool
