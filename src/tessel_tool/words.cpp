#include "words.hpp"

#include "console.hpp"
#include "input.hpp"

namespace tessel_tool {

std::optional<std::vector<std::string>> wordsWith(const std::vector<std::string>& files) {
  std::vector<std::string> words = knownWords();
  for (const std::string& file : files) {
    try {
      Input input(file);
      for (std::string line; input.readLine(line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (!line.empty()) words.push_back(line);
      }
    } catch (const InputError& error) {
      complain(file, error.what());
      return std::nullopt;
    }
  }
  return words;
}

}  // namespace tessel_tool
