#include "explain_command.hpp"

#include <cstddef>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include "console.hpp"
#include "explanation.hpp"
#include "input.hpp"
#include "reference_host/json/parse.hpp"
#include "reference_host/json/text_writer.hpp"
#include "stop.hpp"
#include "text_form.hpp"

namespace tessel_tool {

namespace {

using NamedBuilders = std::vector<reference_host::importer::NamedBuilder>;
using reference_host::json::JsonWriter;

void appendErrorAsJson(std::string& out, const std::string& message, bool oneLine) {
  JsonWriter writer(out, oneLine ? JsonWriter::Layout::kCompact : JsonWriter::Layout::kPretty);
  writer.beginObject().key("error").value(message).endObject();
  out += '\n';
}

void appendExplanation(std::string& out, Document& document, const NamedBuilders& builders,
                       const ExplainOptions& options) {
  const foundation::json::Value value = document.parse();
  const Explanation explanation = explain(builders, value);
  if (options.json) {
    appendAsJson(out, explanation, options.ndjson);
  } else {
    if (options.ndjson) out += visible(document.name) + '\n';
    appendAsText(out, explanation, value, options.all ? Answers::kAll : Answers::kNotable);
  }
}

/// @return why there is no explanation; empty if there is one.
std::string tryToExplain(std::string& out, Document& document, const NamedBuilders& builders,
                         const ExplainOptions& options) try {
  if (document.readError.empty()) appendExplanation(out, document, builders, options);
  return document.readError;
} catch (const reference_host::json::ParseError& error) {
  return error.what();
} catch (const std::bad_alloc&) {
  std::string().swap(out);
  return kOutOfMemory;
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
    const std::string reason = tryToExplain(out, *document, builders, options);
    if (!reason.empty() && options.json) appendErrorAsJson(out, reason, options.ndjson);
    AnswerInProgress answer;
    writeResult(out);
    if (!reason.empty()) {
      complain(reason == kOutOfMemory ? document->name : document->path, reason);
      status = ExitStatus::kInputFailed;
    }
    answer.complete(++answered, document->name);
  }
  return status;
}

}  // namespace tessel_tool
