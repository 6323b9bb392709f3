#include "page/code_line.hpp"

#include <algorithm>

namespace tessel_tool {

namespace {

bool splitsPair(std::u16string_view code, std::size_t at) {
  const auto isOf = [](char16_t unit, unsigned half) { return (unit & 0xFC00U) == half; };
  return at > 0 && at < code.size() && isOf(code[at - 1], 0xD800U) && isOf(code[at], 0xDC00U);
}

/// Where a control goes, whatever the others cover.
LinePiece placeOf(std::u16string_view code, const Columns& columns, std::size_t control) {
  const std::uint64_t length = code.size();
  LinePiece piece{code.size(), code.size(), control};
  if (!columns.start || !columns.end) {
    piece.faults.missing = true;
    return piece;
  }
  auto begin = static_cast<std::size_t>(std::min(*columns.start, length));
  auto end = static_cast<std::size_t>(std::min(*columns.end, length));
  if (*columns.start > *columns.end) {
    piece.faults.reversed = true;
    end = begin;
  }
  piece.faults.beyond = std::max(*columns.start, *columns.end) > length;
  const bool coversNothing = begin == end;
  if (splitsPair(code, begin)) --begin;
  if (coversNothing) {
    end = begin;
  } else if (splitsPair(code, end)) {
    ++end;
  }
  piece.begin = begin;
  piece.end = end;
  piece.covered = code.substr(begin, end - begin);
  return piece;
}

}  // namespace

std::vector<LinePiece> divideLine(std::u16string_view code, const std::vector<Columns>& controls) {
  std::vector<LinePiece> placed;
  placed.reserve(controls.size());
  for (std::size_t control = 0; control != controls.size(); ++control) {
    placed.push_back(placeOf(code, controls[control], control));
  }
  std::stable_sort(placed.begin(), placed.end(), [](const LinePiece& left, const LinePiece& right) {
    return left.begin < right.begin;
  });

  std::vector<LinePiece> pieces;
  std::size_t covered = 0;
  for (LinePiece& piece : placed) {
    if (piece.begin < covered) {
      piece.faults.overlap = true;
      piece.begin = covered;
      piece.end = std::max(piece.end, covered);
    }
    if (covered < piece.begin) pieces.push_back({covered, piece.begin});
    covered = piece.end;
    pieces.push_back(piece);
  }
  if (covered < code.size()) pieces.push_back({covered, code.size()});
  return pieces;
}

}  // namespace tessel_tool
