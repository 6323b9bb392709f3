#include "import_command.hpp"

#include <cstddef>
#include <functional>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "console.hpp"
#include "import_answer.hpp"
#include "input.hpp"
#include "ordered_work.hpp"
#include "reference_host/diagnosis/knowledge.hpp"
#include "reference_host/export/export.hpp"
#include "reference_host/importer/importer.hpp"
#include "stop.hpp"
#include "words.hpp"

namespace tessel_tool {

namespace {

using reference_host::exporting::Exporter;
using reference_host::exporting::PartEnds;

/// A message for standard error, and how much of the results goes before it.
struct Complaint {
  std::size_t after;
  std::string answer;  ///< the result that it is about, which comes first
  std::string subject;
  std::string reason;
};

std::string warning(const DuplicateMembers& duplicates) {
  return "warning: " + duplicates.describe();
}

void append(std::string& out, const ImportAnswer& answer, const ImportOptions& options,
            Exporter& exporter, const PartEnds& partEnds) {
  if (options.json) {
    appendAsJson(out, answer, options.ndjson, exporter, partEnds);
  } else {
    appendAsTree(out, answer, exporter, partEnds);
  }
}

/// What an answer that leaves in pieces has come to when one of them does.
constexpr std::size_t kPieceSize = 65536;

/// Leaves it to the end of the process to free the last answer, which that does at once. To free a
/// large model element by element takes 5 to 10 % of its import.
void leaveToTheEnd(ImportAnswer& answer) {
  static auto* const last = new (std::nothrow) ImportAnswer;  // which nothing destroys
  if (last != nullptr) *last = std::move(answer);
}

/// The answers to a batch of documents as they go to the two streams.
struct WrittenAnswers {
  std::string results;
  std::vector<Complaint> complaints;
  std::size_t documents = 0;
  std::size_t failed = 0;
  std::string first;            // the name of the first document
  std::string last;             // and of the last one
  DuplicateMembers duplicates;  // those not complained of

  /// @param answer is used up, but for its nodes.
  /// @param pieces holds the answer from the moment on when a piece of it leaves; null where it is
  ///   to stay whole.
  void add(ImportAnswer& answer, const ImportOptions& options, Exporter& exporter,
           std::optional<AnswerInProgress>* pieces) {
    const std::size_t before = results.size();
    const auto takePiece = [&] {
      if (pieces == nullptr || results.size() < kPieceSize) return;
      if (!*pieces) pieces->emplace(answer.document, answer.document);
      write();
    };
    if (answer.isWhole()) {
      try {
        append(results, answer, options, exporter, std::ref(takePiece));
      } catch (const std::bad_alloc&) {
        if (pieces != nullptr && *pieces) throw;
        results.resize(before);
        answer.runOutOfMemory();
      }
    }
    if (options.ndjson) {
      duplicates.add(answer.duplicates);
    } else if (answer.duplicates.count != 0) {
      complaints.push_back(
          {results.size(), "", answer.duplicates.place, warning(answer.duplicates)});
    }
    if (documents++ == 0) first = answer.document;
    if (answer.failed()) ++failed;
    last = answer.document;
    if (answer.isWhole()) return;
    // Put by itself, because there may be no memory for longer results.
    std::string text;
    append(text, answer, options, exporter, [] {});
    std::string& subject = answer.failure == kOutOfMemory ? answer.document : answer.path;
    complaints.push_back({before, std::move(text), std::move(subject), std::move(answer.failure)});
  }

  /// Writes what there is and keeps nothing of it.
  void write() {
    const std::string_view text = results;
    std::size_t written = 0;
    for (const Complaint& complaint : complaints) {
      writeResult(text.substr(written, complaint.after - written));
      writeResult(complaint.answer);
      written = complaint.after;
      complain(complaint.subject, complaint.reason);
    }
    writeResult(text.substr(written));
    results.clear();
    complaints.clear();
  }
};

}  // namespace

ExitStatus runImport(BuilderServices& services, const ImportOptions& options) {
  using reference_host::importer::OnError;
  const reference_host::diagnosis::Knowledge knowledge(services.builders(), knownWords());
  const Tell tell = options.json ? Tell::kPrograms : Tell::kPeople;
  const OnError onError = options.failFast ? OnError::kStop : OnError::kContinue;
  DocumentSource source(
      options.files,
      options.ndjson ? DocumentSource::Unit::kLine : DocumentSource::Unit::kWholeInput,
      options.firstLine);
  ProgressLine progress(options.ndjson);
  std::size_t documents = 0;
  std::size_t failed = 0;
  stopBetweenAnswers();
  DuplicateMembers duplicates;
  // With one job each answer is the first in order, and need not be whole before it leaves.
  const bool inPieces = options.jobs == 1 && !options.ndjson;
  std::optional<AnswerInProgress> inProgress;

  runInOrder(
      options.jobs, [&] { return inPieces ? source.nextAlone() : source.nextBatch(); },
      [&](std::vector<Document>& batch) {
        WrittenAnswers answers;
        Exporter exporter;
        for (Document& document : batch) {
          ImportAnswer answer = importOne(knowledge, document, onError, options.log, tell);
          answers.add(answer, options, exporter, inPieces ? &inProgress : nullptr);
          if (inPieces && source.isAtEnd()) leaveToTheEnd(answer);
          if (answers.failed != 0 && options.failFast) break;
        }
        return answers;
      },
      [&](WrittenAnswers answers) {
        documents += answers.documents;
        failed += answers.failed;
        if (!inProgress) inProgress.emplace(answers.first, answers.last);
        duplicates.add(answers.duplicates);
        progress.erase();
        answers.write();
        progress.show(documents, failed);
        inProgress->complete(documents, answers.last);
        inProgress.reset();
        return !(answers.failed != 0 && options.failFast);
      });
  progress.erase();
  if (duplicates.count != 0) complain(duplicates.place, warning(duplicates));
  return failed == 0 ? ExitStatus::kSuccess : ExitStatus::kInputFailed;
}

}  // namespace tessel_tool
