#include "explain_command.hpp"

#include <cstddef>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include "console.hpp"
#include "explanation.hpp"
#include "input.hpp"
#include "located_error.hpp"
#include "reference_host/json/parse.hpp"
#include "reference_host/json/text_writer.hpp"
#include "stop.hpp"
#include "text_form.hpp"
#include "words.hpp"

namespace tessel_tool {

namespace {

using foundation::json::Value;
using reference_host::diagnosis::Knowledge;
using reference_host::diagnosis::pathTo;
using reference_host::diagnosis::valueAt;
using reference_host::json::JsonWriter;

/// Why there is no explanation.
struct Refusal {
  std::string reason;
  Location location;
};

void appendAsJson(std::string& out, const Refusal& refusal, bool oneLine) {
  JsonWriter writer(out, oneLine ? JsonWriter::Layout::kCompact : JsonWriter::Layout::kPretty);
  writer.beginObject().key("error").value(refusal.reason);
  writeLocation(writer, refusal.location);
  writer.endObject();
  out += '\n';
}

/// Appends the explanation of a document, or of the value at a place in it.
std::optional<Refusal> appendExplanation(std::string& out, Document& document,
                                         const Knowledge& knowledge,
                                         const ExplainOptions& options) {
  const Value root = document.parse();
  const Value* value = valueAt(root, pathTo(root, options.pointer));
  if (value == nullptr) return Refusal{"there is no value at " + options.pointer, {}};
  Explanation explanation = explain(knowledge.builders(), *value);
  locateErrors(explanation, knowledge, *value, options.pointer, document);
  if (options.json) {
    appendAsJson(out, explanation, options.ndjson);
  } else {
    if (options.ndjson) out += visible(document.name) + '\n';
    appendAsText(out, explanation, *value, options.all ? Answers::kAll : Answers::kNotable);
  }
  return std::nullopt;
}

/// @return why there is no explanation; nothing if there is one.
std::optional<Refusal> tryToExplain(std::string& out, Document& document,
                                    const Knowledge& knowledge, const ExplainOptions& options) try {
  if (!document.readError.empty()) return Refusal{document.readError, {}};
  return appendExplanation(out, document, knowledge, options);
} catch (const reference_host::json::ParseError& error) {
  Refusal refusal{error.what(), {}};
  refusal.location.place = {error.line(), error.column()};
  return refusal;
} catch (const std::bad_alloc&) {
  std::string().swap(out);
  return Refusal{kOutOfMemory, {}};
}

}  // namespace

ExitStatus runExplain(BuilderServices& services, const ExplainOptions& options) {
  const Knowledge knowledge(services.builders(), knownWords());
  std::vector<std::string> files;
  if (options.file) files.push_back(*options.file);
  DocumentSource source(
      files, options.ndjson ? DocumentSource::Unit::kLine : DocumentSource::Unit::kWholeInput,
      options.firstLine);
  ExitStatus status = ExitStatus::kSuccess;
  std::size_t answered = 0;
  stopBetweenAnswers();
  while (std::optional<Document> document = source.next()) {
    std::string out;
    const auto refusal = tryToExplain(out, *document, knowledge, options);
    if (refusal && options.json) appendAsJson(out, *refusal, options.ndjson);
    AnswerInProgress answer(document->name, document->name);
    writeResult(out);
    if (refusal) {
      complain(refusal->reason == kOutOfMemory ? document->name : document->path, refusal->reason);
      status = ExitStatus::kInputFailed;
    }
    answer.complete(++answered, document->name);
  }
  return status;
}

}  // namespace tessel_tool
