#include "problem_report.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <tuple>
#include <utility>

#include "reference_host/diagnosis/wording.hpp"
#include "text_form.hpp"

namespace tessel_tool {

using reference_host::diagnosis::Problem;
using reference_host::json::TextPlace;
using reference_host::json::TextRange;

namespace {

/// Longer lines are cut around the place.
constexpr std::size_t kWidestExcerpt = 100;
/// How much of a line that is cut stands before the place.
constexpr std::size_t kBeforePlace = 40;
constexpr std::string_view kCut = "...";
constexpr std::size_t kNumberWidth = 5;

constexpr const char* kReplacement = "\xEF\xBF\xBD";

bool continues(char character) {
  return (static_cast<unsigned char>(character) & 0xC0U) == 0x80U;
}

/// A character of a line in a form that takes one column of a terminal: what would not, or is no
/// well-formed UTF-8, is replaced.
std::string_view shownCharacter(std::string_view character) {
  const auto lead = static_cast<unsigned char>(character.front());
  if (lead < 0x80U) return lead < 0x20U ? " " : lead == 0x7FU ? kReplacement : character;
  const std::size_t length = lead < 0xE0U ? 2 : lead < 0xF0U ? 3 : 4;
  if (lead < 0xC2U || lead > 0xF4U || character.size() != length) return kReplacement;
  std::uint32_t code = lead & (0x7FU >> length);
  for (const char next : character.substr(1)) {
    code = (code << 6U) | (static_cast<unsigned char>(next) & 0x3FU);
  }
  const bool invisible = code < 0xA0U || (code >= 0x200BU && code <= 0x200FU) ||
                         (code >= 0x2028U && code <= 0x202EU) ||
                         (code >= 0x2060U && code <= 0x2069U) || code == 0xFEFFU ||
                         (code >= 0xFDD0U && code <= 0xFDEFU) || (code & 0xFFFEU) == 0xFFFEU;
  return invisible ? kReplacement : character;
}

/// Whether no character of its line stands at an offset. A line of an input has lost its line feed.
bool isLineEnd(std::string_view text, std::size_t offset) {
  const std::string_view rest = text.substr(offset, 2);
  return rest.empty() || rest.front() == '\n' || rest == "\r\n" || rest == "\r";
}

/// Some characters of a line, from its place on or up to it.
struct Stretch {
  std::vector<std::string_view> characters;  ///< in their order
  bool goesOn = false;                       ///< there are more
};

Stretch stretchFrom(std::string_view text, std::size_t offset) {
  Stretch stretch;
  stretch.characters.reserve(kWidestExcerpt);
  while (!isLineEnd(text, offset)) {
    if (stretch.characters.size() == kWidestExcerpt) {
      stretch.goesOn = true;
      break;
    }
    const std::size_t begin = offset++;
    while (offset < text.size() && continues(text[offset])) ++offset;
    stretch.characters.push_back(text.substr(begin, offset - begin));
  }
  return stretch;
}

Stretch stretchUpTo(std::string_view text, std::size_t offset) {
  Stretch stretch;
  stretch.characters.reserve(kWidestExcerpt);
  while (offset > 0 && text[offset - 1] != '\n') {
    if (stretch.characters.size() == kWidestExcerpt) {
      stretch.goesOn = true;
      break;
    }
    const std::size_t end = offset--;
    while (offset > 0 && continues(text[offset]) && text[offset - 1] != '\n') --offset;
    stretch.characters.push_back(text.substr(offset, end - offset));
  }
  std::reverse(stretch.characters.begin(), stretch.characters.end());
  return stretch;
}

}  // namespace

std::vector<PlacedProblem> place(std::vector<Problem> problems, std::string_view text,
                                 const std::vector<std::string>& others,
                                 std::vector<reference_host::json::ValuePlace>* found) {
  if (problems.empty() && others.empty()) return {};
  std::vector<std::string_view> pointers;
  pointers.reserve(problems.size() + others.size());
  for (const Problem& problem : problems) {
    pointers.push_back(problem.member ? *problem.member : problem.pointer);
  }
  pointers.insert(pointers.end(), others.begin(), others.end());
  auto places = reference_host::json::findValues(text, pointers);
  std::vector<PlacedProblem> placed;
  placed.reserve(problems.size());
  for (std::size_t index = 0; index != problems.size(); ++index) {
    const auto& held = places[index];
    const bool atKey = problems[index].atKey && held.missingTokens == 0 && held.key;
    placed.push_back({std::move(problems[index]), atKey ? *held.key : held.value});
  }
  sortByPlace(placed);
  showNumbersAsWritten(placed, text);
  if (found != nullptr) {
    places.erase(places.begin(), places.begin() + static_cast<std::ptrdiff_t>(placed.size()));
    *found = std::move(places);
  }
  return placed;
}

bool endsLine(std::string_view text, const TextPlace& place) {
  return isLineEnd(text, Offsets(text).of(place));
}

void sortByPlace(std::vector<PlacedProblem>& problems) {
  const auto order = [](const PlacedProblem& placed) {
    return std::tie(placed.place.begin.line, placed.place.begin.column, placed.problem.member,
                    placed.problem.code);
  };
  std::stable_sort(problems.begin(), problems.end(),
                   [&](const PlacedProblem& left, const PlacedProblem& right) {
                     return order(left) < order(right);
                   });
}

std::size_t Offsets::of(const TextPlace& place) {
  for (; line_ < place.line && offset_ != text_.size(); ++line_) {
    offset_ = std::min(text_.find('\n', offset_), text_.size() - 1) + 1;
    column_ = 1;
  }
  // Eight characters of one byte each at a time, where there are so many.
  constexpr std::size_t kBlock = 8;
  while (column_ + kBlock <= place.column && offset_ + kBlock <= text_.size()) {
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, text_.data() + offset_, kBlock);
    if ((bytes & 0x8080808080808080U) != 0) break;
    column_ += kBlock;
    offset_ += kBlock;
  }
  for (; column_ < place.column && offset_ != text_.size(); ++column_) {
    ++offset_;
    while (offset_ != text_.size() && continues(text_[offset_])) ++offset_;
  }
  return offset_;
}

void appendExcerpt(std::string& out, std::string_view text, std::size_t offset, std::size_t number,
                   const TextRange& place) {
  Stretch before = stretchUpTo(text, offset);
  Stretch after = stretchFrom(text, offset);
  auto& left = before.characters;
  auto& right = after.characters;
  if (left.size() + right.size() > kWidestExcerpt) {
    const std::size_t free = kWidestExcerpt - std::min(kWidestExcerpt, right.size());
    const std::size_t kept = std::min(left.size(), std::max(kBeforePlace, free));
    before.goesOn = before.goesOn || kept < left.size();
    left.erase(left.begin(), left.end() - static_cast<std::ptrdiff_t>(kept));
    after.goesOn = after.goesOn || kWidestExcerpt - kept < right.size();
    right.resize(std::min(right.size(), kWidestExcerpt - kept));
  }

  const std::string digits = std::to_string(number);
  out.append(digits.size() < kNumberWidth ? kNumberWidth - digits.size() : 0, ' ').append(digits);
  out += " | ";
  if (before.goesOn) out += kCut;
  for (const std::string_view character : left) out += shownCharacter(character);
  for (const std::string_view character : right) out += shownCharacter(character);
  if (after.goesOn) out += kCut;
  out += '\n';

  out.append(std::max(kNumberWidth, digits.size()), ' ').append(" | ");
  out.append(left.size() + (before.goesOn ? kCut.size() : 0), ' ') += '^';
  const bool endsHere = place.end.line == place.begin.line;
  const std::size_t length = endsHere ? place.end.column - place.begin.column : std::string::npos;
  const std::size_t shown = std::min(length, right.size());
  if (shown > 1) out.append(shown - 1, '~');
  out += '\n';
}

void showNumbersAsWritten(std::vector<PlacedProblem>& problems, std::string_view text) {
  using reference_host::diagnosis::kPutInQuotes;
  Offsets offsets(text);
  for (auto& [problem, place] : problems) {
    const bool hasNumber = problem.held == "double" && !problem.atKey && problem.hint &&
                           problem.hint->compare(0, kPutInQuotes.size(), kPutInQuotes) == 0;
    if (!hasNumber) continue;
    const std::size_t begin = kPutInQuotes.size() + 1;
    const std::size_t length = place.end.column - place.begin.column;
    problem.hint->replace(begin, problem.hint->find('"', begin) - begin,
                          text.substr(offsets.of(place.begin), length));
  }
}

void appendAsText(std::string& out, const std::vector<PlacedProblem>& problems,
                  const TextOrigin& origin) {
  Offsets offsets(origin.text);
  for (const auto& [problem, place] : problems) {
    const std::size_t line = origin.firstLine + place.begin.line - 1;
    out += visible(origin.path) + ':' + std::to_string(line) + ':' +
           std::to_string(place.begin.column) + ": ";
    out += isError(problem.code) ? "error: " : "warning: ";
    out += visible(problem.message) + " [" + codeName(problem.code) + "]\n";
    appendExcerpt(out, origin.text, offsets.of(place.begin), line, place);
    if (problem.hint) out += "hint: " + visible(*problem.hint) + '\n';
  }
}

void writeOptional(reference_host::json::JsonWriter& writer,
                   const std::optional<std::string>& text) {
  if (text) {
    writer.value(*text);
  } else {
    writer.null();
  }
}

}  // namespace tessel_tool
