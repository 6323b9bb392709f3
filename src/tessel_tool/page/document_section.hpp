#pragma once

/// @file
/// One document on a page: its controls in their lines, and its problems where they are.

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "page/html_text.hpp"
#include "page/read_document.hpp"

namespace tessel_tool {

/// A page holds no more than this, and so many bytes for each byte of its documents.
inline constexpr std::size_t kPageBytes = 100'000;
inline constexpr std::size_t kPageBytesPerByte = 8;

/// How many problems are linked from the top of a page.
inline constexpr std::size_t kMostLinks = 1000;

/// What the top of a page says of a document.
struct DocumentSummary {
  struct Link {
    std::size_t problem;  ///< its number in the section
    bool isError;
    std::size_t line;  ///< in the input
    std::size_t column;
    std::string message;
  };

  std::string name;
  std::size_t number = 0;  ///< of the document, from 1
  std::string failure;
  std::size_t arrived = 0;
  std::size_t expected = 0;  ///< objects that are controls or look like one
  std::size_t errors = 0;
  std::size_t warnings = 0;
  std::map<std::string, std::size_t> kinds;  ///< how many of each have arrived
  std::vector<Link> links;                   ///< to the first problems
};

DocumentSummary summaryOf(const ReadDocument& document, std::size_t number);

/// "all 4 controls arrived" and the like.
std::string verdictOf(const DocumentSummary& summary);
/// The class of the element that holds it.
const char* verdictClassOf(const DocumentSummary& summary);
/// "2 errors, 1 warning"; empty where there is neither.
std::string problemCountsOf(const DocumentSummary& summary);

struct SectionOptions {
  bool isAlone = true;    ///< the page is about this document: its top is the section's heading
  std::size_t share = 0;  ///< how many bytes it may have beside those for its text
};

/// Appends the section of a document, and adds the links to its problems to the summary. What the
/// size of the section does not allow is left out, and said so: first the source and the records of
/// controls, then whole folds and excerpts of problems, then controls, and problems at last.
/// @param partEnds called between parts: what the string holds by then may be taken away.
void appendSection(HtmlText& out, const ReadDocument& document, DocumentSummary& summary,
                   const SectionOptions& options, const std::function<void()>& partEnds);

}  // namespace tessel_tool
