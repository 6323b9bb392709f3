#include "reference_host/diagnosis/recognition.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

#include "reference_host/diagnosis/attempt.hpp"
#include "reference_host/diagnosis/nearest_word.hpp"
#include "reference_host/diagnosis/wording.hpp"

namespace reference_host::diagnosis {

using foundation::json::Value;
using importer::NamedBuilder;

bool isWordKey(std::string_view name) noexcept {
  return std::find(std::begin(kWordKeys), std::end(kWordKeys), name) != std::end(kWordKeys);
}

Value Recognition::sample() const {
  Value::Object members{{"className", className}};
  if (type) members["context"] = Value::Object{{"type", *type}};
  return members;
}

std::vector<std::string> wordsOfName(std::string name) {
  name.erase(0, name.rfind(':') + 1);
  for (const std::string_view ending : {"Impl", "Builder", "Node"}) {
    const std::size_t length = name.size() - std::min(name.size(), ending.size());
    if (name.compare(length, ending.size(), ending) == 0) name.erase(length);
  }
  if (name.empty()) return {};
  std::string small = name;
  small.front() = lowered(small.substr(0, 1)).front();
  return {small, name, name + "Node", name + std::string(kClassEnding)};
}

void appendRecognitions(std::vector<Recognition>& found, const NamedBuilder& builder,
                        const std::vector<std::string>& words) {
  for (const std::string& className : words) {
    Recognition recognition{&builder, className, std::nullopt};
    const Attempt asked = attempt(builder, importer::Step::kCanBuild, recognition.sample());
    if (asked.claimed) found.push_back(recognition);
    if (asked.succeeded) continue;
    // The class name is not enough.
    for (const std::string& type : words) {
      recognition.type = type;
      if (isClaimed(builder, recognition.sample())) found.push_back(recognition);
    }
  }
}

}  // namespace reference_host::diagnosis
