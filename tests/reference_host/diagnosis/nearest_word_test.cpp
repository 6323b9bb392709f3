#include "reference_host/diagnosis/nearest_word.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace reference_host::diagnosis {
namespace {

std::string joined(const std::vector<std::string>& words) {
  std::string all;
  for (const std::string& word : words) all += (all.empty() ? "" : " ") + word;
  return all;
}

TEST(NearestWordTest, IsWhatMayBeMisspelt) {
  const struct {
    const char* description;
    const char* word;
    std::vector<std::string> candidates;
    const char* nearest;
  } rows[] = {
      {"a character too many", "imports", {"explain", "import"}, "import"},
      {"one too few", "mport", {"explain", "import"}, "import"},
      {"another one", "inport", {"explain", "import"}, "import"},
      {"two neighbours swapped", "miport", {"explain", "import"}, "import"},
      {"two edits", "expotr", {"export"}, "export"},
      {"two edits of letters that are not ASCII", "b€tt€n", {"button"}, "button"},
      {"two swaps", "imnimmu", {"minimum"}, "minimum"},
      {"three edits", "build", {"builders"}, ""},
      {"two edits of four characters", "slid", {"slider"}, "slider"},
      {"two edits of three characters", "sli", {"slide"}, ""},
      {"one edit of two characters", "is", {"id"}, "id"},
      {"one edit of one character", "i", {"id"}, ""},
      {"none", "", {"id", "a"}, ""},
      {"another case", "EXECUTIONMODEL", {"executionModel"}, "executionModel"},
      {"separators", "min_linked-variable ", {"minLinkedVariable"}, "minLinkedVariable"},
      {"case and separators go before edits", "MAX_VALUE", {"MAX_VALU", "maxValue"}, "maxValue"},
      {"all of the nearest", "step", {"stop", "setup", "steeps", "steps"}, "stop steps"},
      {"fewer edits go before the order", "abcdef", {"abcdxx", "abcdex"}, "abcdex"},
      {"the word itself is passed over", "step", {"step", "stop"}, "stop"},
      {"no candidates", "step", {}, ""},
  };
  for (const auto& row : rows) {
    const std::vector<std::string> words = nearestWords(row.word, row.candidates);
    EXPECT_EQ(joined(words), row.nearest) << row.description;
    EXPECT_EQ(nearestWord(row.word, row.candidates), words.empty() ? "" : words.front());
  }
}

TEST(NearestWordTest, ARelatedOneSaysMoreOrLess) {
  const std::vector<std::string> names{"defaultValue",      "defaultValueLinkedVariable",
                                       "maxLinkedVariable", "maximum",
                                       "minLinkedVariable", "step"};
  const char* const rows[][2] = {
      {"max", "maximum"},
      {"MAX", "maximum"},
      {"max_value", "maximum"},
      {"value", "defaultValue"},
      {"stepSize", "step"},
      {"stepDefaultValue", "defaultValue"},
      {"linkedVariable", "defaultValueLinkedVariable maxLinkedVariable minLinkedVariable"},
      {"valueDefault", ""},
      {"ma", ""},
      {"", ""}};
  for (const auto& [word, related] : rows)
    EXPECT_EQ(joined(relatedWords(word, names)), related) << word;
}

}  // namespace
}  // namespace reference_host::diagnosis
