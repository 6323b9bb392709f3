#include "tessel_tool/explain_command.hpp"

#include <cstddef>
#include <optional>
#include <vector>

#include "reference_host/json/parse.hpp"
#include "reference_host/json/text_writer.hpp"
#include "tessel_tool/console.hpp"
#include "tessel_tool/explanation.hpp"
#include "tessel_tool/input.hpp"
#include "tessel_tool/stop.hpp"

namespace tessel_tool {

namespace {

using foundation::json::Value;
using reference_host::json::JsonWriter;

void appendErrorAsJson(std::string& out, const std::string& message, bool oneLine) {
  JsonWriter writer(out, oneLine ? JsonWriter::Layout::kCompact : JsonWriter::Layout::kPretty);
  writer.beginObject().key("error").value(message).endObject();
  out += '\n';
}

/// The document's value; nothing, and the reason, when it cannot be read or parsed.
std::optional<Value> valueOf(Document& document, std::string& reason) {
  reason = document.readError;
  if (!reason.empty()) return std::nullopt;
  try {
    return document.parse();
  } catch (const reference_host::json::ParseError& error) {
    reason = error.what();
    return std::nullopt;
  }
}

}  // namespace

ExitStatus runExplain(BuilderServices& services, const ExplainOptions& options) {
  const auto& builders = services.builders();
  std::vector<std::string> files;
  if (options.file) files.push_back(*options.file);
  DocumentSource source(
      files, options.ndjson ? DocumentSource::Unit::kLine : DocumentSource::Unit::kWholeInput);
  ExitStatus status = ExitStatus::kSuccess;
  std::size_t answered = 0;
  stopBetweenAnswers();
  while (std::optional<Document> document = source.next()) {
    std::string out;
    std::string reason;
    const std::optional<Value> value = valueOf(*document, reason);
    if (value && options.json) {
      appendAsJson(out, explain(builders, *value), options.ndjson);
    } else if (value) {
      if (options.ndjson) out += document->name + '\n';
      appendAsText(out, explain(builders, *value), *value);
    } else if (options.json) {
      appendErrorAsJson(out, reason, options.ndjson);
    }
    AnswerInProgress answer;
    writeResult(out);
    if (!value) {
      complain(document->path, reason);
      status = ExitStatus::kInputFailed;
    }
    answer.complete(++answered, document->name);
  }
  return status;
}

}  // namespace tessel_tool
