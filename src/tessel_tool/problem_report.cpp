#include "tessel_tool/problem_report.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <tuple>
#include <utility>

#include "tessel_tool/text_form.hpp"

namespace tessel_tool {

using reference_host::diagnosis::Problem;
using reference_host::json::TextRange;

namespace {

/// Longer lines are cut around the place.
constexpr std::size_t kWidestExcerpt = 100;
/// How much of a line that is cut stands before the place.
constexpr std::size_t kBeforePlace = 40;
constexpr std::string_view kCut = "...";
constexpr std::size_t kNumberWidth = 5;

/// The characters of a line, each in a form that takes one column of a terminal: what would not, or
/// is no well-formed UTF-8, is replaced.
std::vector<std::string> charactersOf(std::string_view line) {
  constexpr const char* kReplacement = "\xEF\xBF\xBD";
  std::vector<std::string> characters;
  while (!line.empty()) {
    const auto lead = static_cast<unsigned char>(line.front());
    const std::size_t length = lead < 0x80U ? 1 : lead < 0xE0U ? 2 : lead < 0xF0U ? 3 : 4;
    std::uint32_t code = lead < 0x80U ? lead : lead & (0x7FU >> length);
    std::size_t taken = 1;
    while (taken < length && taken < line.size() &&
           (static_cast<unsigned char>(line[taken]) & 0xC0U) == 0x80U) {
      code = (code << 6U) | (static_cast<unsigned char>(line[taken++]) & 0x3FU);
    }
    const bool cutShort = taken != length || (lead >= 0x80U && lead < 0xC2U) || lead > 0xF4U;
    const bool invisible = (code >= 0x7FU && code < 0xA0U) ||
                           (code >= 0x200BU && code <= 0x200FU) ||
                           (code >= 0x2028U && code <= 0x202EU) ||
                           (code >= 0x2060U && code <= 0x2069U) || code == 0xFEFFU;
    if (code < 0x20U) {
      characters.emplace_back(" ");
    } else if (cutShort || invisible) {
      characters.emplace_back(kReplacement);
    } else {
      characters.emplace_back(line.substr(0, taken));
    }
    line.remove_prefix(taken);
  }
  return characters;
}

/// Appends a line of a text and a caret under a part of it.
void appendExcerpt(std::string& out, std::string_view line, std::size_t number,
                   const TextRange& place) {
  const std::vector<std::string> characters = charactersOf(line);
  const std::size_t begin = std::min(place.begin.column - 1, characters.size());
  const bool endsHere = place.end.line == place.begin.line;
  const std::size_t end =
      std::clamp(endsHere ? place.end.column - 1 : characters.size(), begin, characters.size());
  std::size_t first = 0;
  std::size_t last = characters.size();
  if (last > kWidestExcerpt) {
    first = std::min(begin < kBeforePlace ? 0 : begin - kBeforePlace, last - kWidestExcerpt);
    last = first + kWidestExcerpt;
  }

  const std::string digits = std::to_string(number);
  out.append(digits.size() < kNumberWidth ? kNumberWidth - digits.size() : 0, ' ').append(digits);
  out += " | ";
  if (first != 0) out += kCut;
  for (std::size_t index = first; index != last; ++index) out += characters[index];
  if (last != characters.size()) out += kCut;
  out += '\n';

  out.append(std::max(kNumberWidth, digits.size()), ' ').append(" | ");
  out.append(begin - first + (first == 0 ? 0 : kCut.size()), ' ') += '^';
  const std::size_t shown = std::min(end, last);
  if (shown > begin + 1) out.append(shown - begin - 1, '~');
  out += '\n';
}

/// Gives the lines of a text by their numbers, which must not go down.
class Lines {
 public:
  explicit Lines(std::string_view text) noexcept : rest_(text) {}

  std::string_view line(std::size_t number) {
    for (; number_ < number; ++number_) {
      const std::size_t end = rest_.find('\n');
      rest_.remove_prefix(end == std::string_view::npos ? rest_.size() : end + 1);
    }
    std::string_view line = rest_.substr(0, rest_.find('\n'));
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    return line;
  }

 private:
  std::string_view rest_;
  std::size_t number_ = 1;
};

}  // namespace

std::vector<PlacedProblem> place(std::vector<Problem> problems, std::string_view text) {
  if (problems.empty()) return {};
  std::vector<std::string> pointers;
  pointers.reserve(problems.size());
  for (const Problem& problem : problems) {
    pointers.push_back(problem.member.value_or(problem.pointer));
  }
  const auto places = reference_host::json::findValues(text, pointers);
  std::vector<PlacedProblem> placed;
  placed.reserve(problems.size());
  for (std::size_t index = 0; index != problems.size(); ++index) {
    const auto& found = places[index];
    const bool atKey = problems[index].atKey && found.missingTokens == 0 && found.key;
    placed.push_back({std::move(problems[index]), atKey ? *found.key : found.value});
  }
  sortByPlace(placed);
  return placed;
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

void appendAsText(std::string& out, const std::vector<PlacedProblem>& problems,
                  const TextOrigin& origin) {
  Lines lines(origin.text);
  for (const auto& [problem, place] : problems) {
    const std::size_t line = origin.firstLine + place.begin.line - 1;
    out += visible(origin.path) + ':' + std::to_string(line) + ':' +
           std::to_string(place.begin.column) + ": ";
    out += isError(problem.code) ? "error: " : "warning: ";
    out += visible(problem.message) + " [" + codeName(problem.code) + "]\n";
    appendExcerpt(out, lines.line(place.begin.line), line, place);
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
