#include "foundation/json.hpp"
#include "reference_host/json/text_writer.hpp"

namespace foundation::json {

std::string pretty_print(const Value& value) {
  using reference_host::json::JsonWriter;
  std::string out;
  JsonWriter(out, JsonWriter::Layout::kPretty).json(value);
  return out;
}

}  // namespace foundation::json
