#include "tessel_tool/import_command.hpp"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "reference_host/importer/importer.hpp"
#include "tessel_tool/console.hpp"
#include "tessel_tool/import_answer.hpp"
#include "tessel_tool/input.hpp"
#include "tessel_tool/ordered_work.hpp"
#include "tessel_tool/stop.hpp"

namespace tessel_tool {

namespace {

/// What is told on standard error, and how much of the results goes before it.
struct Complaint {
  std::size_t after;
  std::string path;
  std::string reason;
};

/// The answers to a batch of documents as they go to the two streams.
struct WrittenAnswers {
  std::string results;
  std::vector<Complaint> complaints;
  std::size_t documents = 0;
  std::size_t failed = 0;
  std::string last;  // the name of the last document

  void append(const ImportAnswer& answer, const ImportOptions& options) {
    if (options.json) {
      appendAsJson(results, answer, options.ndjson);
    } else {
      appendAsTree(results, answer);
    }
    if (!answer.parseError.empty()) {
      complaints.push_back({results.size(), answer.path, answer.parseError});
    }
    ++documents;
    if (answer.failed()) ++failed;
  }

  void write() const {
    const std::string_view text = results;
    std::size_t written = 0;
    for (const Complaint& complaint : complaints) {
      writeResult(text.substr(written, complaint.after - written));
      written = complaint.after;
      complain(complaint.path, complaint.reason);
    }
    writeResult(text.substr(written));
  }
};

}  // namespace

ExitStatus runImport(BuilderServices& services, const ImportOptions& options) {
  using reference_host::importer::OnError;
  const auto& builders = services.builders();
  const OnError onError = options.failFast ? OnError::kStop : OnError::kContinue;
  DocumentSource source(options.files, options.ndjson ? DocumentSource::Unit::kLine
                                                      : DocumentSource::Unit::kWholeInput);
  ProgressLine progress(options.ndjson);
  std::size_t documents = 0;
  std::size_t failed = 0;
  stopBetweenAnswers();

  runInOrder(
      options.jobs, [&] { return source.nextBatch(); },
      [&](std::vector<Document>& batch) {
        WrittenAnswers answers;
        for (Document& document : batch) {
          answers.append(importOne(builders, document, onError, options.log), options);
          answers.last = std::move(document.name);
          if (answers.failed != 0 && options.failFast) break;
        }
        return answers;
      },
      [&](const WrittenAnswers& answers) {
        documents += answers.documents;
        failed += answers.failed;
        AnswerInProgress inProgress;
        progress.erase();
        answers.write();
        progress.show(documents, failed);
        inProgress.complete(documents, answers.last);
        return !(answers.failed != 0 && options.failFast);
      });
  return failed == 0 ? ExitStatus::kSuccess : ExitStatus::kInputFailed;
}

}  // namespace tessel_tool
