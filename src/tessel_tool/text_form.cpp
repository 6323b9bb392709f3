#include "text_form.hpp"

#include <cstddef>

#include "reference_host/json/text_writer.hpp"

namespace tessel_tool {

using reference_host::json::appendVisible;

std::string_view shortName(std::string_view qualifiedName) {
  const std::size_t separator = qualifiedName.rfind("::");
  return separator == std::string_view::npos ? qualifiedName : qualifiedName.substr(separator + 2);
}

std::string visible(std::string_view text) {
  std::string line;
  appendVisible(line, text);
  return line;
}

void appendRecords(std::string& out, const std::vector<std::string>& records,
                   std::string_view indent) {
  for (const std::string& record : records) {
    std::string_view rest = record;
    const char* mark = "- ";
    for (;;) {
      const std::size_t length = rest.find('\n');
      out.append(indent).append(mark);
      appendVisible(out, rest.substr(0, length));
      out += '\n';
      if (length == std::string_view::npos) break;
      rest.remove_prefix(length + 1);
      mark = "  ";
    }
  }
}

}  // namespace tessel_tool
