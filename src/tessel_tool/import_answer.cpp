#include "tessel_tool/import_answer.hpp"

#include <new>
#include <utility>

#include "reference_host/export/export.hpp"
#include "reference_host/json/parse.hpp"
#include "reference_host/json/text_writer.hpp"
#include "reference_host/logging/log_capture.hpp"
#include "tessel_tool/console.hpp"
#include "tessel_tool/text_form.hpp"

namespace tessel_tool {

namespace {

using NamedBuilders = std::vector<reference_host::importer::NamedBuilder>;
using reference_host::importer::ImportError;
using reference_host::importer::OnError;
using reference_host::importer::Step;
using reference_host::importer::Summary;
using reference_host::json::JsonWriter;
using reference_host::logging::LogCapture;

void writeFailure(JsonWriter& writer, const ImportAnswer& answer) {
  writer.beginObject();
  writer.key("pointer").value("").key("builder").null().key("step").value(answer.failedStep);
  writer.key("message").value(answer.failure);
  writer.endObject();
}

void writeError(JsonWriter& writer, const ImportError& error) {
  writer.beginObject();
  writer.key("pointer").value(error.pointer).key("builder").value(error.builder);
  writer.key("step").value(stepName(error.step)).key("message").value(error.message);
  writer.endObject();
}

void writeSummary(JsonWriter& writer, const Summary& summary) {
  writer.beginObject();
  writer.key("objects").value(summary.objects).key("claimed").value(summary.claimed);
  writer.key("built").value(summary.built).key("failed").value(summary.failed);
  writer.endObject();
}

void appendError(std::string& out, const ImportError& error) {
  out += "  error at ";
  if (error.pointer.empty()) {
    out += "the whole document";
  } else {
    reference_host::json::appendVisiblePointer(out, error.pointer);
  }
  out += ": ";
  out += visible(shortName(error.builder));
  out += error.step == Step::kCanBuild ? " cannot tell whether it can build this: "
                                       : " cannot build this: ";
  out += visible(error.message) + '\n';
}

void importInto(ImportAnswer& answer, Document& document, const NamedBuilders& builders,
                OnError onError) {
  std::optional<LogCapture> capture;
  if (answer.log) capture.emplace();
  try {
    const foundation::json::Value value = document.parse();
    answer.duplicates = std::move(document.duplicates);
    answer.failedStep = stepName(Step::kBuild);
    answer.result = importDocument(builders, gx::zero::Model::create(), value, onError);
  } catch (const reference_host::json::ParseError& error) {
    answer.failure = error.what();
  }
  if (!capture) return;
  // A part of the log would be taken for the whole.
  if (!capture->isComplete()) throw std::bad_alloc();
  answer.log = capture->takeTexts();
}

}  // namespace

void ImportAnswer::runOutOfMemory() noexcept {
  result = {};
  duplicates = {};
  failure = kOutOfMemory;
  if (log) log.emplace();
}

ImportAnswer importOne(const NamedBuilders& builders, Document& document, OnError onError,
                       bool withLog) {
  ImportAnswer answer;
  answer.document = std::move(document.name);
  answer.failure = std::move(document.readError);
  if (withLog) answer.log.emplace();
  try {
    if (answer.failure.empty()) importInto(answer, document, builders, onError);
  } catch (const std::bad_alloc&) {
    answer.runOutOfMemory();
  }
  answer.path = std::move(document.path);
  return answer;
}

void appendAsJson(std::string& out, const ImportAnswer& answer, bool oneLine) {
  JsonWriter writer(out, oneLine ? JsonWriter::Layout::kCompact : JsonWriter::Layout::kPretty);
  writer.beginObject();
  writer.key("document").value(reference_host::json::withBytesEscaped(answer.document));
  writer.key("nodes").beginArray();
  for (const auto& node : answer.result.nodes) reference_host::exporting::writeJson(writer, node);
  writer.endArray();
  writer.key("errors").beginArray();
  if (!answer.failure.empty()) writeFailure(writer, answer);
  for (const ImportError& error : answer.result.errors) writeError(writer, error);
  writer.endArray();
  writer.key("summary");
  writeSummary(writer, answer.result.summary);
  if (answer.log) {
    writer.key("log").beginArray();
    for (const std::string& record : *answer.log) writer.value(record);
    writer.endArray();
  }
  writer.endObject();
  out += '\n';
}

void appendAsTree(std::string& out, const ImportAnswer& answer) {
  if (!answer.failure.empty()) return;
  out += visible(answer.document) + '\n';
  for (const auto& node : answer.result.nodes) {
    reference_host::exporting::appendTree(out, node, 1);
  }
  for (const ImportError& error : answer.result.errors) appendError(out, error);
  if (answer.log) {
    out += "  log\n";
    appendRecords(out, *answer.log, "    ");
  }
  const Summary& summary = answer.result.summary;
  out += "  " + std::to_string(summary.objects) +
         (summary.objects == 1 ? " object: " : " objects: ") + std::to_string(summary.claimed) +
         " claimed, " + std::to_string(summary.built) + " built, " +
         std::to_string(summary.failed) + " failed\n";
}

}  // namespace tessel_tool
