#include "text_form.hpp"

#include "reference_host/json/text_writer.hpp"

namespace tessel_tool {

using reference_host::json::appendVisible;

std::string_view shortName(std::string_view qualifiedName) {
  const std::size_t separator = qualifiedName.rfind("::");
  return separator == std::string_view::npos ? qualifiedName : qualifiedName.substr(separator + 2);
}

std::string counted(std::size_t count, std::string_view what) {
  std::string text = std::to_string(count) + ' ';
  text += what;
  if (count != 1) text += 's';
  return text;
}

std::string visible(std::string_view text) {
  std::string line;
  appendVisible(line, text);
  return line;
}

void appendRecord(std::string& out, std::string_view record) {
  const char* mark = "    - ";
  for (;;) {
    const std::size_t length = record.find('\n');
    out += mark;
    appendVisible(out, record.substr(0, length));
    out += '\n';
    if (length == std::string_view::npos) return;
    record.remove_prefix(length + 1);
    mark = "      ";
  }
}

}  // namespace tessel_tool
