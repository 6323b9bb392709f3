#pragma once

/// @file
/// Where controls stand in their line of code.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace tessel_tool {

/// The columns that a control is to cover, from 0, in UTF-16 units. None is there that was not set.
struct Columns {
  std::optional<std::uint64_t> start;
  std::optional<std::uint64_t> end;  ///< behind the last one
};

/// Why a control does not stand where its columns say.
struct ColumnFaults {
  bool missing = false;   ///< one of them is not set
  bool reversed = false;  ///< the end is before the start
  bool beyond = false;    ///< they go beyond the line
  bool overlap = false;   ///< another control covers some of them
};

/// A part of a line: text, or what a control stands in place of.
struct LinePiece {
  static constexpr std::size_t kText = static_cast<std::size_t>(-1);

  std::size_t begin;
  std::size_t end;
  std::size_t control = kText;  ///< its index
  ColumnFaults faults{};
  std::u16string_view covered{};  ///< the text in the control's columns, whatever others cover
};

/// Divides a line of code among controls: every unit of it is in one piece, every control has one,
/// from left to right. A control whose columns are of no use covers nothing: it stands where they
/// begin, one without columns behind the line. No piece ends inside a surrogate pair.
std::vector<LinePiece> divideLine(std::u16string_view code, const std::vector<Columns>& controls);

}  // namespace tessel_tool
