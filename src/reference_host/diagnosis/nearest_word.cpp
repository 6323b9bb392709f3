#include "reference_host/diagnosis/nearest_word.hpp"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <numeric>
#include <utility>

namespace reference_host::diagnosis {

namespace {

constexpr std::size_t kMostEdits = 2;

bool isSeparator(char character) {
  return character == '-' || character == '_' || character == ' ';
}

std::string withoutSeparators(std::string_view word) {
  std::string letters = lowered(word);
  letters.erase(std::remove_if(letters.begin(), letters.end(), isSeparator), letters.end());
  return letters;
}

bool continues(char character) {
  return (static_cast<unsigned char>(character) & 0xC0U) == 0x80U;
}

std::size_t countCharacters(std::string_view utf8) {
  return utf8.size() - static_cast<std::size_t>(std::count_if(utf8.begin(), utf8.end(), continues));
}

std::vector<std::string_view> charactersOf(std::string_view utf8) {
  std::vector<std::string_view> characters;
  while (!utf8.empty()) {
    const auto* const next = std::find_if_not(utf8.begin() + 1, utf8.end(), continues);
    const auto length = static_cast<std::size_t>(next - utf8.begin());
    characters.push_back(utf8.substr(0, length));
    utf8.remove_prefix(length);
  }
  return characters;
}

/// How many edits make one word the other.
std::size_t editDistance(std::string_view leftWord, std::string_view rightWord) {
  const std::vector<std::string_view> left = charactersOf(leftWord);
  const std::vector<std::string_view> right = charactersOf(rightWord);
  std::vector<std::size_t> before;
  std::vector<std::size_t> above(right.size() + 1);
  std::iota(above.begin(), above.end(), std::size_t{0});
  for (std::size_t i = 1; i <= left.size(); ++i) {
    std::vector<std::size_t> row{i};
    for (std::size_t j = 1; j <= right.size(); ++j) {
      const bool same = left[i - 1] == right[j - 1];
      std::size_t least = std::min({above[j] + 1, row[j - 1] + 1, above[j - 1] + (same ? 0 : 1)});
      const bool swapped =
          i > 1 && j > 1 && left[i - 1] == right[j - 2] && left[i - 2] == right[j - 1];
      if (swapped) least = std::min(least, before[j - 2] + 1);
      row.push_back(least);
    }
    before = std::move(above);
    above = std::move(row);
  }
  return above.back();
}

/// "defaultValue" as "default" and "value".
std::vector<std::string> wordsIn(std::string_view name) {
  std::vector<std::string> words;
  bool begins = true;
  bool inCapitals = false;
  for (const char character : name) {
    const bool isCapital = character >= 'A' && character <= 'Z';
    if (isCapital && !inCapitals) begins = true;
    inCapitals = isCapital;
    if (isSeparator(character)) {
      begins = true;
      continue;
    }
    if (begins) words.emplace_back();
    begins = false;
    words.back() += character;
  }
  for (std::string& word : words) word = lowered(word);
  return words;
}

/// Whether a name has all the words of another one, in their order.
bool hasWordsOf(std::string_view longer, std::string_view shorter) {
  constexpr std::size_t kShortestBeginning = 3;
  const std::vector<std::string> wanted = wordsIn(shorter);
  auto next = wanted.begin();
  for (const std::string& word : wordsIn(longer)) {
    if (next == wanted.end()) break;
    const std::size_t common = std::min(word.size(), next->size());
    const bool isBeginning = next == wanted.begin() && common >= kShortestBeginning &&
                             word.compare(0, common, *next, 0, common) == 0;
    if (word == *next || isBeginning) ++next;
  }
  return !wanted.empty() && next == wanted.end();
}

}  // namespace

std::string lowered(std::string_view word) {
  std::string small(word);
  std::transform(small.begin(), small.end(), small.begin(), [](char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a')
                                                : character;
  });
  return small;
}

std::vector<std::string> relatedWords(std::string_view word,
                                      const std::vector<std::string>& candidates) {
  std::vector<std::string> more;
  std::vector<std::string> less;
  for (const std::string& candidate : candidates) {
    if (candidate == word) continue;
    if (hasWordsOf(candidate, word)) {
      more.push_back(candidate);
    } else if (hasWordsOf(word, candidate)) {
      less.push_back(candidate);
    }
  }
  const std::vector<std::string>& all = more.empty() ? less : more;
  std::vector<std::string> related;
  std::copy_if(all.begin(), all.end(), std::back_inserter(related), [&](const std::string& one) {
    return std::none_of(all.begin(), all.end(), [&](const std::string& other) {
      if (more.empty()) return other.size() > one.size();
      return other.size() < one.size() && hasWordsOf(one, other);
    });
  });
  return related;
}

std::vector<std::string> nearestWords(std::string_view word,
                                      const std::vector<std::string>& candidates) {
  const std::string letters = withoutSeparators(word);
  std::vector<std::string> nearest;
  const std::size_t length = countCharacters(word);
  std::size_t fewest = std::min(kMostEdits, length / 2);
  for (const std::string& candidate : candidates) {
    if (candidate == word) continue;
    if (withoutSeparators(candidate) == letters) return {candidate};
    const std::size_t other = countCharacters(candidate);
    if (std::max(length, other) - std::min(length, other) > kMostEdits) continue;
    const std::size_t edits = editDistance(word, candidate);
    if (edits > fewest) continue;
    if (edits < fewest) nearest.clear();
    fewest = edits;
    nearest.push_back(candidate);
  }
  return nearest;
}

std::string nearestWord(std::string_view word, const std::vector<std::string>& candidates) {
  const std::vector<std::string> nearest = nearestWords(word, candidates);
  return nearest.empty() ? std::string() : nearest.front();
}

}  // namespace reference_host::diagnosis
