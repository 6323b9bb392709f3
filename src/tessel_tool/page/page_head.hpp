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
  bool isOfLines = false;  ///< documents are lines, and those without an error are in no list
  bool isStopped = false;  ///< at the first error, because that was asked for
  std::vector<DocumentSummary> documents;  ///< those that are listed
  std::vector<bool> hasSection;            ///< of each
  std::size_t read = 0;                    ///< how many documents there are
  std::size_t failed = 0;
  std::size_t unlisted = 0;  ///< failed documents that are in no list
  DocumentSummary total;
};

/// Appends everything up to the sections.
/// @param room how many bytes it may have; lists are cut at that, and say so.
void appendPageHead(HtmlText& out, const PageContents& contents, std::size_t room);

void appendPageEnd(HtmlText& out);

}  // namespace tessel_tool
