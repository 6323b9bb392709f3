#include "page/import_page.hpp"

#include <atomic>
#include <cstddef>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "console.hpp"
#include "input.hpp"
#include "ordered_work.hpp"
#include "page/document_section.hpp"
#include "page/html_text.hpp"
#include "page/page_head.hpp"
#include "page/spool.hpp"
#include "reference_host/diagnosis/knowledge.hpp"
#include "stop.hpp"
#include "words.hpp"

namespace tessel_tool {

namespace {

using reference_host::diagnosis::Knowledge;
using reference_host::importer::OnError;

/// Of lines only those that failed have a section, and no more of them than this.
constexpr std::size_t kMostLineSections = 200;
/// What sections may have of a page's own bytes: all together, and each of several.
constexpr std::size_t kSectionBytes = 30'000;
constexpr std::size_t kOneSectionBytes = 2'000;
constexpr std::size_t kPageEnd = 100;

struct Batch {
  std::size_t firstNumber;  ///< of the first document
  std::vector<Document> documents;
};

/// A document as it goes to the page.
struct MadeSection {
  DocumentSummary summary;
  std::string path;
  std::size_t bytes = 0;  ///< of the document
  bool failed = false;
  DuplicateMembers duplicates;
  bool isThere = false;
  HtmlText text;                       ///< unless it is in the spool already
  std::optional<std::size_t> spooled;  ///< where it begins there
};

class PageImport {
 public:
  PageImport(BuilderServices& services, const ImportOptions& options)
      : options_(options),
        knowledge_(services.builders(), knownWords()),
        source_(options.files,
                options.ndjson ? DocumentSource::Unit::kLine : DocumentSource::Unit::kWholeInput,
                options.firstLine),
        progress_(options.ndjson) {
    contents_.isAlone = options.files.size() <= 1 && !options.ndjson;
    contents_.isOfLines = options.ndjson;
  }

  ExitStatus run() {
    stopBetweenAnswers();
    std::size_t taken = 0;
    runInOrder(
        options_.jobs,
        [&] {
          auto documents = inPieces() ? source_.nextAlone() : source_.nextBatch();
          std::optional<Batch> batch;
          if (documents) {
            const std::size_t count = documents->size();
            batch = Batch{taken + 1, std::move(*documents)};
            taken += count;
          }
          return batch;
        },
        [&](Batch& batch) {
          std::vector<MadeSection> made;
          for (Document& document : batch.documents) {
            made.push_back(make(std::move(document), batch.firstNumber + made.size()));
            if (made.back().failed && options_.failFast) break;
          }
          return made;
        },
        [&](std::vector<MadeSection> made) {
          for (MadeSection& section : made) take(std::move(section));
          progress_.show(contents_.read, contents_.failed);
          contents_.isStopped = contents_.failed != 0 && options_.failFast;
          return !contents_.isStopped;
        });
    progress_.erase();
    if (duplicates_.count != 0) complainOf(duplicates_);
    write();
    return contents_.failed == 0 ? ExitStatus::kSuccess : ExitStatus::kInputFailed;
  }

 private:
  /// With one job each section is the next one, and need not be whole before it is put away.
  bool inPieces() const { return options_.jobs == 1 && !options_.ndjson; }

  MadeSection make(Document document, std::size_t number) {
    MadeSection made;
    made.path = document.path;
    const OnError onError = options_.failFast ? OnError::kStop : OnError::kContinue;
    ReadDocument read = readDocument(knowledge_, std::move(document), onError, options_.log);
    made.bytes = read.check.document.content().size();
    made.duplicates = read.check.document.duplicates;
    made.summary = summaryOf(read, number);
    try {
      append(made, read);
    } catch (const std::bad_alloc&) {
      if (made.spooled) spool_.truncate(*made.spooled);
      made.text.clear();
      read.runOutOfMemory();
      made.summary = summaryOf(read, number);
      append(made, read);
    }
    made.failed = read.failed();
    return made;
  }

  void append(MadeSection& made, const ReadDocument& read) {
    made.isThere = !options_.ndjson || (read.failed() && lineSections_.load() < kMostLineSections);
    if (!made.isThere) return;
    if (inPieces()) made.spooled = spool_.size();
    const SectionOptions section{contents_.isAlone,
                                 contents_.isAlone ? kSectionBytes : kOneSectionBytes};
    appendSection(made.text, read, made.summary, section, [&] {
      if (!made.spooled || made.text.size() < Spool::kInMemory) return;
      spool_.append(made.text.view());
      made.text.clear();
    });
    if (made.spooled) spool_.append(std::exchange(made.text, {}).view());
  }

  void take(MadeSection made) {
    bytes_ += made.bytes;
    ++contents_.read;
    if (made.failed) ++contents_.failed;
    if (contents_.read == 1) first_ = made.summary.name;
    last_ = made.summary.name;
    tell(made);
    addToTotal(made.summary);
    if (options_.ndjson && !made.failed) return;
    if (options_.ndjson && lineSections_ == kMostLineSections) {
      ++contents_.unlisted;
      return;
    }
    ++lineSections_;
    if (!made.spooled) spool_.append(made.text.view());
    const std::size_t size = made.text.size();
    if (spool_.size() > kSectionBytes + kPageBytesPerByte * bytes_) {
      spool_.truncate(made.spooled.value_or(spool_.size() - size));
      made.isThere = false;
    }
    contents_.documents.push_back(std::move(made.summary));
    contents_.hasSection.push_back(made.isThere);
  }

  void tell(const MadeSection& made) {
    progress_.erase();
    if (options_.ndjson) {
      duplicates_.add(made.duplicates);
    } else if (made.duplicates.count != 0) {
      complainOf(made.duplicates);
    }
    const std::string& failure = made.summary.failure;
    if (!failure.empty()) {
      complain(failure == kOutOfMemory ? made.summary.name : made.path, failure);
    }
  }

  static void complainOf(const DuplicateMembers& duplicates) {
    complain(duplicates.place, "warning: " + duplicates.describe());
  }

  void addToTotal(const DocumentSummary& summary) {
    DocumentSummary& total = contents_.total;
    if (contents_.isAlone) {
      total.name = summary.name;
      total.failure = summary.failure;
    }
    total.arrived += summary.arrived;
    total.expected += summary.expected;
    total.errors += summary.errors;
    total.warnings += summary.warnings;
    for (const auto& [kind, count] : summary.kinds) total.kinds[kind] += count;
  }

  void write() {
    AnswerInProgress inProgress(first_, last_);
    HtmlText text;
    appendPageHead(text, contents_,
                   kPageBytes + kPageBytesPerByte * bytes_ - spool_.size() - kPageEnd);
    writeResult(text.view());
    spool_.writeAll();
    text.clear();
    appendPageEnd(text);
    writeResult(text.view());
    inProgress.complete(contents_.read, last_);
  }

  const ImportOptions& options_;
  Knowledge knowledge_;
  DocumentSource source_;
  ProgressLine progress_;
  PageContents contents_;
  Spool spool_;            // the sections
  std::size_t bytes_ = 0;  // of the documents
  std::string first_;
  std::string last_;
  std::atomic<std::size_t> lineSections_{0};
  DuplicateMembers duplicates_;
};

}  // namespace

ExitStatus runImportPage(BuilderServices& services, const ImportOptions& options) {
  return PageImport(services, options).run();
}

}  // namespace tessel_tool
