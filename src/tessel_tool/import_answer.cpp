#include "import_answer.hpp"

#include <new>
#include <utility>

#include "console.hpp"
#include "reference_host/json/parse.hpp"
#include "reference_host/json/text_writer.hpp"
#include "reference_host/logging/log_capture.hpp"
#include "text_form.hpp"

namespace tessel_tool {

namespace {

using reference_host::diagnosis::Knowledge;
using reference_host::exporting::Exporter;
using reference_host::exporting::PartEnds;
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
  writeLocation(writer, answer.failedAt);
  writer.endObject();
}

void writeError(JsonWriter& writer, const ImportError& error, const Location& location) {
  writer.beginObject();
  writer.key("pointer").value(error.pointer).key("builder").value(error.builder);
  writer.key("step").value(stepName(error.step)).key("message").value(error.message);
  writeLocation(writer, location);
  writer.endObject();
}

void writeSummary(JsonWriter& writer, const Summary& summary) {
  writer.beginObject();
  writer.key("objects").value(summary.objects).key("claimed").value(summary.claimed);
  writer.key("built").value(summary.built).key("failed").value(summary.failed);
  writer.endObject();
}

/// The errors in the order of their places, as people are told of them; they are used up.
std::string toldErrors(std::vector<LocatedError>& errors, const Document& document) {
  std::vector<PlacedProblem> problems;
  problems.reserve(errors.size());
  for (LocatedError& error : errors) {
    if (error.told) problems.push_back(*std::exchange(error.told, nullptr));
  }
  sortByPlace(problems);
  showNumbersAsWritten(problems, document.content());
  std::string text;
  appendAsText(text, problems, originOf(document));
  return text;
}

void importInto(ImportAnswer& answer, Document& document, const Knowledge& knowledge,
                OnError onError, Tell tell) {
  std::optional<LogCapture> capture;
  if (answer.log) capture.emplace();
  const auto endLog = [&] {
    if (!capture) return;
    // A part of the log would be taken for the whole.
    if (!capture->isComplete()) throw std::bad_alloc();
    answer.log = capture->takeTexts();
    capture.reset();
  };
  try {
    foundation::json::Value value = document.parse();
    answer.duplicates = std::move(document.duplicates);
    answer.failedStep = stepName(Step::kBuild);
    answer.result =
        importDocument(knowledge.builders(), gx::zero::Model::create(), std::move(value), onError);
    // The builders are asked again from here on, which is no part of the import.
    endLog();
    answer.located = locate(knowledge, answer.result.errors, nullptr, document, tell);
    answer.told = toldErrors(answer.located, document);
  } catch (const reference_host::json::ParseError& error) {
    answer.failure = error.what();
    answer.failedAt.place = {error.line(), error.column()};
    if (tell == Tell::kPeople) {
      appendAsText(answer.told, {syntaxProblem(error, document)}, originOf(document));
    }
  }
  endLog();
}

}  // namespace

void ImportAnswer::runOutOfMemory() noexcept {
  result = {};
  located.clear();
  told.clear();
  failedAt = {};
  duplicates = {};
  failure = kOutOfMemory;
  if (log) log.emplace();
}

ImportAnswer importOne(const Knowledge& knowledge, Document& document, OnError onError,
                       bool withLog, Tell tell) {
  ImportAnswer answer;
  answer.document = std::move(document.name);
  answer.failure = std::move(document.readError);
  if (withLog) answer.log.emplace();
  try {
    if (answer.failure.empty()) importInto(answer, document, knowledge, onError, tell);
  } catch (const std::bad_alloc&) {
    answer.runOutOfMemory();
  }
  answer.path = std::move(document.path);
  std::string().swap(document.text);
  return answer;
}

void appendAsJson(std::string& out, const ImportAnswer& answer, bool oneLine, Exporter& exporter,
                  const PartEnds& partEnds) {
  JsonWriter writer(out, oneLine ? JsonWriter::Layout::kCompact : JsonWriter::Layout::kPretty);
  writer.beginObject();
  writer.key("document").value(reference_host::json::withBytesEscaped(answer.document));
  writer.key("nodes").beginArray();
  for (const auto& node : answer.result.nodes) exporter.writeJson(writer, node, partEnds);
  writer.endArray();
  writer.key("errors").beginArray();
  if (!answer.failure.empty()) writeFailure(writer, answer);
  for (std::size_t index = 0; index != answer.result.errors.size(); ++index) {
    writeError(writer, answer.result.errors[index], answer.located[index].location);
    partEnds();
  }
  writer.endArray();
  writer.key("summary");
  writeSummary(writer, answer.result.summary);
  if (answer.log) {
    writer.key("log").beginArray();
    for (const std::string& record : *answer.log) {
      writer.value(record);
      partEnds();
    }
    writer.endArray();
  }
  writer.endObject();
  out += '\n';
}

void appendAsTree(std::string& out, const ImportAnswer& answer, Exporter& exporter,
                  const PartEnds& partEnds) {
  if (!answer.failure.empty()) {
    out += answer.told;
    return;
  }
  out += visible(answer.document) + '\n';
  for (const auto& node : answer.result.nodes) exporter.appendTree(out, node, 1, partEnds);
  out += answer.told;
  partEnds();
  if (answer.log) {
    out += "  log\n";
    for (const std::string& record : *answer.log) {
      appendRecord(out, record);
      partEnds();
    }
  }
  const Summary& summary = answer.result.summary;
  out += "  " + std::to_string(summary.objects) +
         (summary.objects == 1 ? " object: " : " objects: ") + std::to_string(summary.claimed) +
         " claimed, " + std::to_string(summary.built) + " built, " +
         std::to_string(summary.failed) + " failed\n";
}

}  // namespace tessel_tool
