#include "tessel_tool/text_form.hpp"

#include <cstddef>

#include "reference_host/json/text_writer.hpp"

namespace tessel_tool {

std::string_view shortName(std::string_view qualifiedName) {
  const std::size_t separator = qualifiedName.rfind("::");
  return separator == std::string_view::npos ? qualifiedName : qualifiedName.substr(separator + 2);
}

std::string onOneLine(std::string_view text) {
  std::string line;
  for (const char character : text) {
    if (static_cast<unsigned char>(character) >= 0x20 && character != '\x7f') {
      line += character;
    } else if (character == '\x7f') {
      line += "\\u007f";
    } else {
      std::string quoted;
      reference_host::json::appendText(quoted, std::string_view(&character, 1));
      line.append(quoted, 1, quoted.size() - 2);
    }
  }
  return line;
}

void appendRecords(std::string& out, const std::vector<std::string>& records,
                   std::string_view indent) {
  for (const std::string& record : records) {
    out.append(indent).append("- ");
    for (const char character : record) {
      out += character;
      if (character == '\n') out.append(indent).append("  ");
    }
    out += '\n';
  }
}

}  // namespace tessel_tool
