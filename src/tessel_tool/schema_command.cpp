#include "schema_command.hpp"

#include <utility>

#include "console.hpp"
#include "reference_host/diagnosis/knowledge.hpp"
#include "reference_host/json/text_writer.hpp"
#include "schema.hpp"
#include "words.hpp"

namespace tessel_tool {

ExitStatus runSchema(BuilderServices& services, const SchemaOptions& options) {
  auto words = wordsWith(options.wordFiles);
  if (!words) return ExitStatus::kUnusable;
  const reference_host::diagnosis::Knowledge knowledge(services.builders(), std::move(*words));
  std::string out;
  using reference_host::json::JsonWriter;
  JsonWriter(out, JsonWriter::Layout::kPretty)
      .json(schemaOf(knowledge, services.bundleName(),
                     options.strict ? Strictness::kStrict : Strictness::kAsImport));
  out += '\n';
  writeResult(out);
  return ExitStatus::kSuccess;
}

}  // namespace tessel_tool
