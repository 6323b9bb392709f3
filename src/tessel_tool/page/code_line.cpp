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
  if (!columns.start || !columns.end) {
    return {code.size(), code.size(), control, ColumnFault::kMissing};
  }
  auto begin = static_cast<std::size_t>(std::min(*columns.start, length));
  auto end = static_cast<std::size_t>(std::min(*columns.end, length));
  ColumnFault fault = ColumnFault::kNone;
  if (*columns.start > *columns.end) {
    fault = ColumnFault::kReversed;
    end = begin;
  } else if (*columns.end > length) {
    fault = ColumnFault::kBeyond;
  }
  const bool coversNothing = begin == end;
  if (splitsPair(code, begin)) --begin;
  if (coversNothing) {
    end = begin;
  } else if (splitsPair(code, end)) {
    ++end;
  }
  return {begin, end, control, fault};
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
      if (piece.fault == ColumnFault::kNone) piece.fault = ColumnFault::kOverlap;
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
