#include "reference_host/diagnosis/wording.hpp"

#include <algorithm>
#include <cctype>
#include <cstddef>

#include "json/number.hpp"
#include "reference_host/diagnosis/culprit.hpp"
#include "reference_host/diagnosis/nearest_word.hpp"
#include "reference_host/json/pointer.hpp"
#include "reference_host/json/text_writer.hpp"

namespace reference_host::diagnosis {

using foundation::json::Value;

namespace {

/// Members that name an object for people, the likeliest first.
constexpr const char* kIdKeys[] = {"controlId", "instanceId", "anchorId"};

bool endsWith(std::string_view word, std::string_view ending) {
  return word.size() >= ending.size() && word.substr(word.size() - ending.size()) == ending;
}

/// "checkBox" as "check box", "ColorPickerControlNode" as "color picker".
std::string asCommonWords(std::string_view word) {
  for (const std::string_view ending : {kClassEnding, std::string_view("Node")}) {
    if (word.size() > ending.size() && endsWith(word, ending)) {
      word.remove_suffix(ending.size());
      break;
    }
  }
  std::string words;
  for (const char character : word) {
    const auto byte = static_cast<unsigned char>(character);
    const bool capital = byte < 0x80 && std::isupper(byte) != 0;
    if (capital && !words.empty()) words += ' ';
    words += capital ? static_cast<char>(std::tolower(byte)) : character;
  }
  return words;
}

bool isDigit(std::string_view text, std::size_t index) {
  return index < text.size() && std::isdigit(static_cast<unsigned char>(text[index])) != 0;
}

/// Whether a text is a number that a document can hold.
bool isNumber(std::string_view text) {
  if (text.substr(0, 1) != "-" && !isDigit(text, 0)) return false;
  const json::NumberScan scan = json::scanNumber(text);
  return scan.fault == nullptr && scan.length == text.size() && json::nearestDouble(text);
}

}  // namespace

std::string nameOfObject(const Knowledge& knowledge, const importer::NamedBuilder* builder,
                         const Value& object) {
  const std::string* className = textAt(object, classNamePlace());
  const std::string* type = textAt(object, typePlace());
  std::string name = "object";
  if (className != nullptr && builder == nullptr) {
    name += " of class " + quoted(*className);
  } else if (className != nullptr) {
    const bool byType = type != nullptr && !knowledge.isKnownByClass(*builder, *className);
    name = asCommonWords(byType ? *type : *className);
  }
  for (const char* key : kIdKeys) {
    if (const std::string* id = textAt(object, {key})) return name + ' ' + quoted(*id);
  }
  return name;
}

std::string nameOfPlace(const Path& place) {
  // The last name, and the indices since.
  auto name = std::find_if(place.rbegin(), place.rend(), [](const PathStep& step) {
    return std::get_if<std::string>(&step) != nullptr;
  });
  std::string words;
  if (name == place.rbegin()) {
    words = quoted(*std::get_if<std::string>(&place.back()));
    // Which element it is in, if it is in one.
    const auto inElement = name == place.rend() ? name : name + 1;
    if (inElement == place.rend() || std::get_if<std::size_t>(&*inElement) == nullptr) return words;
    return words + " in " + nameOfPlace(parentOf(place));
  }
  words = "element " + std::to_string(*std::get_if<std::size_t>(&place.back()));
  if (place.size() == 1) return words;
  return words + " of " + nameOfPlace(parentOf(place));
}

std::string nameOfHolder(const std::string& pattern) {
  if (pattern.empty()) return "the object itself";
  std::string words;
  for (const std::string_view token : json::tokensOf(pattern)) {
    if (token == "*") {
      words.insert(0, "the elements of ");
      continue;
    }
    if (!words.empty()) words += '.';
    words += quoted(json::nameOf(token));
  }
  return words;
}

std::string heldWords(const std::string& type) {
  if (type == "undefined") return "missing";
  if (type == "null") return "null";
  if (type == "bool") return "a boolean";
  if (type == "double" || type == "float") return "a number";
  if (type == "int64" || type == "uint64") return "an integer";
  if (type == "string") return "text";
  return type == "array" ? "an array" : "an object";
}

std::string wantedWords(const std::string& type) {
  return type == "bool" ? "true or false" : heldWords(type);
}

std::string exampleOf(const std::string& type) {
  if (type == "object") return "{...}";
  if (type == "array") return "[...]";
  if (type == "string") return "\"...\"";
  return type == "bool" ? "true" : "0";
}

std::optional<std::string> correction(const Value& held, const std::string& wanted) {
  const auto* text = held.get_if<std::string>();
  const auto* number = held.get_if<double>();
  const auto* boolean = held.get_if<bool>();
  if (wanted == "string" && (number != nullptr || boolean != nullptr)) {
    std::string json;
    json::JsonWriter(json).json(held);
    return std::string(kPutInQuotes) + '"' + json + '"';
  }
  if (wanted == "double" && text != nullptr) {
    if (isNumber(*text)) return "write it without quotes: " + *text;
    const auto meant = numberIn(*text);
    return "write a number, without quotes" + (meant ? ": " + *meant : "");
  }
  if (wanted == "bool" && text != nullptr) {
    if (lowered(*text) == "true" || lowered(*text) == "false") {
      return "write it without quotes: " + lowered(*text);
    }
    return "write true or false, without quotes";
  }
  if (wanted == "bool" && number != nullptr && (*number == 0 || *number == 1)) {
    return std::string("write ") + (*number == 0 ? "false" : "true");
  }
  return std::nullopt;
}

std::string correctionOr(const Value& held, const std::string& wanted) {
  if (auto hint = correction(held, wanted)) return *std::move(hint);
  if (wanted == "array") return "put it in brackets: [...]";
  if (wanted == "object") return "put an object here: {...}";
  return "write " + (wanted == "string" ? "a text" : wantedWords(wanted));
}

std::optional<std::string> numberIn(std::string_view text) {
  constexpr const char* kSpace = " \t\r\n";
  constexpr std::size_t kThousand = 3;
  text.remove_prefix(std::min(text.find_first_not_of(kSpace), text.size()));
  text = text.substr(0, text.find_last_not_of(kSpace) + 1);
  std::string number = text.substr(0, 1) == "-" ? "-" : "";
  if (!number.empty() || text.substr(0, 1) == "+") text.remove_prefix(1);
  const bool hasWhole = isDigit(text, 0);
  if (!hasWhole && !isDigit(text, 1)) return std::nullopt;
  text.remove_prefix(std::min(text.find_first_not_of('0'), text.size()));
  const bool isSmall = !isDigit(text, 0);
  if (isSmall) number += '0';
  number += text;
  const std::size_t comma = number.find(',');
  // Before three digits it may stand between thousands.
  if (comma != std::string::npos && (isSmall || number.size() - comma - 1 != kThousand)) {
    number[comma] = '.';
  }
  if (hasWhole && number.back() == '.') number.pop_back();
  return isNumber(number) ? std::optional(number) : std::nullopt;
}

std::string listed(const std::vector<std::string>& names, std::size_t most) {
  std::string list;
  for (std::size_t index = 0; index != names.size(); ++index) {
    if (index != 0) list += ", ";
    if (index == most) return list + "...";
    list += quoted(names[index]);
  }
  return list;
}

std::string anyOf(const std::vector<std::string>& names) {
  if (names.size() == 1) return quoted(names.front());
  return listed({names.begin(), names.end() - 1}) + " or " + quoted(names.back());
}

std::string orAnother(const std::string& what, const std::vector<std::string>& words) {
  if (words.size() == 1) return {};
  return ", or another " + what + ": " + listed({words.begin() + 1, words.end()});
}

std::string lineAndColumn(const json::TextPlace& place, std::size_t firstLine) {
  return "line " + std::to_string(firstLine + place.line - 1) + ", column " +
         std::to_string(place.column);
}

std::string quoted(std::string_view name) {
  std::string text;
  json::appendText(text, name);
  return text;
}

std::string bareClassName(std::string_view className) {
  const std::string ending = lowered(kClassEnding);
  std::string word = lowered(className);
  if (word.size() > ending.size() && endsWith(word, ending)) {
    word.resize(word.size() - ending.size());
  }
  return word;
}

}  // namespace reference_host::diagnosis
