#include "check_command.hpp"

#include <new>
#include <string_view>
#include <utility>

#include "check_answer.hpp"
#include "console.hpp"
#include "input.hpp"
#include "ordered_work.hpp"
#include "reference_host/diagnosis/knowledge.hpp"
#include "sarif.hpp"
#include "stop.hpp"
#include "words.hpp"

namespace tessel_tool {

namespace {

using reference_host::diagnosis::Knowledge;
using reference_host::diagnosis::Warnings;

/// The answers to a batch of documents as they go to the two streams.
struct CheckedBatch {
  std::string results;
  std::vector<std::pair<std::string, std::string>> unreadable;  // who is complained of, and why
  std::size_t documents = 0;
  std::size_t failed = 0;
  std::string first;  // the name of the first document
  std::string last;   // and of the last one

  void add(CheckAnswer answer, const CheckOptions& options) {
    const std::size_t before = results.size();
    try {
      append(answer, options);
    } catch (const std::bad_alloc&) {
      results.resize(before);
      answer.runOutOfMemory();
      append(answer, options);
    }
    if (documents++ == 0) first = answer.document.name;
    const bool unchecked = !answer.failure.empty();
    if (unchecked || answer.errors != 0 || (options.strict && answer.warnings != 0)) ++failed;
    last = answer.document.name;
    if (!unchecked) return;
    const auto& document = answer.document;
    unreadable.emplace_back(answer.failure == kOutOfMemory ? document.name : document.path,
                            answer.failure);
  }

 private:
  void append(const CheckAnswer& answer, const CheckOptions& options) {
    switch (options.format) {
      case CheckOptions::Format::kText:
        return appendAsText(results, answer);
      case CheckOptions::Format::kJson:
        return appendAsJson(results, answer, options.ndjson);
      case CheckOptions::Format::kSarif:
        return appendAsSarif(results, answer);
    }
  }
};

}  // namespace

ExitStatus runCheck(BuilderServices& services, const CheckOptions& options) {
  auto words = wordsWith(options.wordFiles);
  if (!words) return ExitStatus::kUnusable;
  const Knowledge knowledge(services.builders(), std::move(*words));
  const Warnings warnings = options.noWarnings ? Warnings::kNo : Warnings::kYes;
  DocumentSource source(
      options.files,
      options.ndjson ? DocumentSource::Unit::kLine : DocumentSource::Unit::kWholeInput,
      options.firstLine);
  ProgressLine progress(options.ndjson);
  std::size_t documents = 0;
  std::size_t failed = 0;
  const bool sarif = options.format == CheckOptions::Format::kSarif;
  std::vector<std::pair<std::string, std::string>> unreadable;
  bool anyResult = false;
  stopBetweenAnswers();
  if (sarif) writeResult(sarifBegin());

  runInOrder(
      options.jobs, [&] { return source.nextBatch(); },
      [&](std::vector<Document>& batch) {
        CheckedBatch checked;
        for (Document& document : batch) {
          checked.add(checkOne(knowledge, std::move(document), warnings), options);
        }
        return checked;
      },
      [&](const CheckedBatch& checked) {
        documents += checked.documents;
        failed += checked.failed;
        AnswerInProgress inProgress(checked.first, checked.last);
        progress.erase();
        std::string_view results = checked.results;
        if (sarif && !anyResult && !results.empty()) {
          results.remove_prefix(1);  // no comma before the first
          anyResult = true;
        }
        writeResult(results);
        for (const auto& [subject, reason] : checked.unreadable) complain(subject, reason);
        if (sarif) {
          unreadable.insert(unreadable.end(), checked.unreadable.begin(), checked.unreadable.end());
        }
        progress.show(documents, failed);
        inProgress.complete(documents, checked.last);
        return true;
      });
  const ExitStatus status = failed == 0 ? ExitStatus::kSuccess : ExitStatus::kInputFailed;
  if (sarif) writeResult(sarifEnd(unreadable, status));
  return status;
}

}  // namespace tessel_tool
