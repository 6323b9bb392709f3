#pragma once

/// @file
/// The import of one document, and what is written about it.

#include <optional>
#include <string>
#include <vector>

#include "gx/zero.hpp"
#include "input.hpp"
#include "located_error.hpp"
#include "reference_host/export/export.hpp"
#include "reference_host/importer/importer.hpp"

namespace tessel_tool {

/// What became of one document.
struct ImportAnswer {
  std::string document;              ///< its name
  std::string path;                  ///< the input that it comes from
  std::string failure;               ///< not empty when the document has failed as a whole
  const char* failedStep = "parse";  ///< the step of that: reading counts as parsing
  Location failedAt;                 ///< where parsing stopped
  DuplicateMembers duplicates;
  reference_host::importer::ImportResult result;
  std::vector<LocatedError> located;            ///< its errors
  std::string told;                             ///< its errors for people, if they are told
  std::optional<std::vector<std::string>> log;  ///< the records, if they were asked for

  /// Whether the answer tells all: of what does not parse too, where people are told.
  bool isWhole() const { return failure.empty() || !told.empty(); }
  bool failed() const { return !failure.empty() || !result.errors.empty(); }

  /// Drops what there is: memory did not suffice for the document. Takes none itself.
  void runOutOfMemory() noexcept;
};

/// Imports one document, whose names and text are used up, into a model of its own.
ImportAnswer importOne(const reference_host::diagnosis::Knowledge& knowledge, Document& document,
                       reference_host::importer::OnError onError, bool withLog, Tell tell);

/// Appends the answer as a JSON object and a line feed.
/// @param oneLine one line without white space, else indented.
/// @param partEnds called behind each element, error and record.
void appendAsJson(std::string& out, const ImportAnswer& answer, bool oneLine,
                  reference_host::exporting::Exporter& exporter,
                  const reference_host::exporting::PartEnds& partEnds);

/// Appends the answer as indented text: nodes, errors, records and counts. Of a document that does
/// not parse there is that error alone, and nothing of one that could not be read.
void appendAsTree(std::string& out, const ImportAnswer& answer,
                  reference_host::exporting::Exporter& exporter,
                  const reference_host::exporting::PartEnds& partEnds);

}  // namespace tessel_tool
