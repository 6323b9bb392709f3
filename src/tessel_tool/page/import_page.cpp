#include "page/import_page.hpp"

#include <algorithm>
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

/// Of lines only those that lost something have a section, and no more of them than this.
constexpr std::size_t kMostLineSections = 200;
/// What sections may have of a page's own bytes; the rest is for its head.
constexpr std::size_t kSectionBytes = 70'000;
/// What each byte of a name may become in the head, where it stands as title and as heading.
constexpr std::size_t kNameBytesPerByte = 12;
/// A section of one message takes no more, with what its text has room for.
constexpr std::size_t kLeastSectionBytes = 340;
/// With more text than this documents do not wait for their sections.
constexpr std::size_t kMostWaitingBytes = 1U << 18U;
constexpr std::size_t kPageEnd = 100;

struct Batch {
  std::size_t firstNumber;  ///< of the first document
  std::vector<Document> documents;
};

/// A document on its way to the page.
struct MadeDocument {
  DocumentSummary summary;
  std::string path;
  DuplicateMembers duplicates;
  std::size_t bytes = 0;  ///< of the document
  bool failed = false;
  std::optional<ReadDocument> read;  ///< if it is to have a section
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
          auto documents = isAloneAtATime() ? source_.nextAlone() : source_.nextBatch();
          std::optional<Batch> batch;
          if (documents) {
            const std::size_t count = documents->size();
            batch = Batch{taken + 1, std::move(*documents)};
            taken += count;
          }
          return batch;
        },
        [&](Batch& batch) {
          std::vector<MadeDocument> made;
          for (Document& document : batch.documents) {
            made.push_back(make(std::move(document), batch.firstNumber + made.size()));
            if (made.back().failed && options_.failFast) break;
          }
          return made;
        },
        [&](std::vector<MadeDocument> made) {
          for (MadeDocument& document : made) take(std::move(document));
          progress_.show(contents_.read, contents_.failed);
          contents_.isStopped = contents_.failed != 0 && options_.failFast;
          return !contents_.isStopped;
        });
    progress_.erase();
    isRead_ = true;
    writeSections();
    if (duplicates_.count != 0) complainOf(duplicates_);
    write();
    return contents_.failed == 0 ? ExitStatus::kSuccess : ExitStatus::kInputFailed;
  }

 private:
  /// With one job no document is read before the last one is done with.
  bool isAloneAtATime() const { return options_.jobs == 1 && !options_.ndjson; }

  MadeDocument make(Document document, std::size_t number) {
    const OnError onError = options_.failFast ? OnError::kStop : OnError::kContinue;
    MadeDocument made;
    made.read = readDocument(knowledge_, std::move(document), onError, options_.log);
    const Document& read = made.read->check.document;
    made.path = read.path;
    made.duplicates = read.duplicates;
    made.bytes = read.content().size();
    made.summary = summaryOf(*made.read, number);
    made.failed = made.read->failed();
    if (!isListed(made)) made.read.reset();
    return made;
  }

  bool isListed(const MadeDocument& made) const {
    return !options_.ndjson || made.failed || made.summary.arrived != made.summary.expected;
  }

  void take(MadeDocument made) {
    bytes_ += made.bytes;
    ++contents_.read;
    if (made.failed) ++contents_.failed;
    if (contents_.read == 1) first_ = made.summary.name;
    last_ = made.summary.name;
    tell(made);
    if (isListed(made) && (!options_.ndjson || taken_ != kMostLineSections)) {
      ++taken_;
      if (waitingBytes_ + made.bytes > kMostWaitingBytes) writeSections();
      waitingBytes_ += made.bytes;
      waiting_.push_back(std::move(made));
      if (waitingBytes_ > kMostWaitingBytes) writeSections();
      return;
    }
    if (isListed(made)) {
      ++contents_.unlisted;
    } else if (made.summary.warnings != 0) {
      ++contents_.withWarnings;
    }
    addToTotal(made.summary);
  }

  /// Writes the sections of what waits for them: how many there are decides what each may have.
  void writeSections() {
    for (MadeDocument& made : waiting_) {
      const std::size_t before = spool_.size();
      try {
        writeSection(*made.read, made.summary);
      } catch (const std::bad_alloc&) {
        spool_.truncate(before);
        made.read->runOutOfMemory();
        made.summary = summaryOf(*made.read, made.summary.number);
        if (!made.failed) ++contents_.failed;
        complain(made.summary.name, kOutOfMemory);
        writeSection(*made.read, made.summary);
      }
      made.read.reset();
      waitingBytes_ -= made.bytes;
      ++written_;
      contents_.hasSection.push_back(spool_.size() <= sectionBytes());
      if (!contents_.hasSection.back()) spool_.truncate(before);
      addToTotal(made.summary);
      contents_.documents.push_back(std::move(made.summary));
    }
    waiting_.clear();
  }

  /// What all sections may have for the documents that have been read.
  std::size_t sectionBytes() const {
    std::size_t bytes = kSectionBytes;
    if (contents_.isAlone) bytes -= std::min(bytes, kNameBytesPerByte * first_.size());
    return bytes + kPageBytesPerByte * bytes_;
  }

  void writeSection(const ReadDocument& read, DocumentSummary& summary) {
    HtmlText text;
    appendSection(text, read, summary, {contents_.isAlone, share()}, [&] {
      if (text.size() < Spool::kInMemory) return;
      spool_.append(text.view());
      text.clear();
    });
    spool_.append(text.view());
  }

  /// What the next section may have beside the bytes for its text: what one message takes, and half
  /// of what is left when each one that follows has that too.
  std::size_t share() const {
    const std::size_t taken = spool_.size() + kPageBytesPerByte * waitingBytes_;
    const std::size_t left = sectionBytes() - std::min(sectionBytes(), taken);
    const std::size_t sections = sectionsToCome();
    const std::size_t least = std::min(kLeastSectionBytes, left / sections);
    const std::size_t spare = left - least * sections;
    return least + (sections == 1 ? spare : spare / 2);
  }

  /// How many sections there will be at most, from the next one on.
  std::size_t sectionsToCome() const {
    if (isRead_) return taken_ - written_;
    const std::size_t most =
        options_.ndjson ? kMostLineSections : std::max<std::size_t>(1, options_.files.size());
    return most - written_;
  }

  void tell(const MadeDocument& made) {
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
    if (!summary.failure.empty()) ++contents_.unreadable;
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
  std::vector<MadeDocument> waiting_;  // for their sections
  std::size_t waitingBytes_ = 0;       // of these documents
  std::size_t taken_ = 0;              // documents that have or will have a section
  std::size_t written_ = 0;            // sections, also those that there was no room for
  bool isRead_ = false;                // everything
  DuplicateMembers duplicates_;
};

}  // namespace

ExitStatus runImportPage(BuilderServices& services, const ImportOptions& options) {
  return PageImport(services, options).run();
}

}  // namespace tessel_tool
