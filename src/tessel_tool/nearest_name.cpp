#include "nearest_name.hpp"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace tessel_tool {

namespace {

std::size_t editsBetween(std::string_view left, std::string_view right) {
  // Row by row: how many edits lead from the first characters of one to those of the other.
  std::vector<std::size_t> before(right.size() + 1);
  std::vector<std::size_t> last(right.size() + 1);
  std::vector<std::size_t> row(right.size() + 1);
  for (std::size_t column = 0; column <= right.size(); ++column) last[column] = column;
  for (std::size_t line = 1; line <= left.size(); ++line) {
    row[0] = line;
    for (std::size_t column = 1; column <= right.size(); ++column) {
      const bool same = left[line - 1] == right[column - 1];
      row[column] =
          std::min({last[column] + 1, row[column - 1] + 1, last[column - 1] + (same ? 0 : 1)});
      if (line > 1 && column > 1 && left[line - 1] == right[column - 2] &&
          left[line - 2] == right[column - 1]) {
        row[column] = std::min(row[column], before[column - 2] + 1);
      }
    }
    std::swap(before, last);
    std::swap(last, row);
  }
  return last[right.size()];
}

}  // namespace

std::string_view nearestName(std::string_view word, const std::vector<std::string_view>& names) {
  std::string_view nearest;
  std::size_t fewest = 0;
  for (const std::string_view name : names) {
    const std::size_t edits = editsBetween(word, name);
    if (2 * edits > std::max(word.size(), name.size())) continue;
    if (!nearest.empty() && edits >= fewest) continue;
    nearest = name;
    fewest = edits;
  }
  return nearest;
}

}  // namespace tessel_tool
