#pragma once

/// @file
/// What stands around the sections of a page: its head, its summary and its links.

#include <cstddef>
#include <string>
#include <vector>

#include "page/document_section.hpp"
#include "page/html_text.hpp"

namespace tessel_tool {

/// What a page says of all its documents.
struct PageContents {
  bool isAlone = true;     ///< one document, which the page is about
  bool isOfLines = false;  ///< documents are lines, and those that lost nothing are in no list
  bool isStopped = false;  ///< at the first error, because that was asked for
  std::vector<DocumentSummary> documents;  ///< those that are listed
  std::vector<bool> hasSection;            ///< of each
  std::size_t read = 0;                    ///< how many documents there are
  std::size_t failed = 0;
  std::size_t unreadable = 0;    ///< how many of them came to nothing as a whole
  std::size_t unlisted = 0;      ///< lines that lost something and are in no list
  std::size_t withWarnings = 0;  ///< lines that lost nothing and have warnings
  DocumentSummary total;
};

/// Appends everything up to the sections.
/// @param room how many bytes it may have; lists are cut at that, and say so.
void appendPageHead(HtmlText& out, const PageContents& contents, std::size_t room);

void appendPageEnd(HtmlText& out);

}  // namespace tessel_tool
