#pragma once

/// @file
/// The check of one document, and what is written about it.

#include <cstddef>
#include <string>
#include <vector>

#include "input.hpp"
#include "problem_report.hpp"
#include "reference_host/diagnosis/document_check.hpp"

namespace tessel_tool {

/// What is wrong with one document.
struct CheckAnswer {
  Document document;                    ///< with its text
  std::string failure;                  ///< not empty when it could not be read or checked
  std::vector<PlacedProblem> problems;  ///< in the order of their places
  std::size_t objects = 0;
  std::size_t claimed = 0;
  std::size_t errors = 0;
  std::size_t warnings = 0;

  /// Drops what there is: memory did not suffice for the document.
  void runOutOfMemory();
};

CheckAnswer checkOne(const reference_host::diagnosis::Knowledge& knowledge, Document document,
                     reference_host::diagnosis::Warnings warnings);

/// Appends the answer as a JSON object and a line feed.
/// @param oneLine one line without white space, else indented.
void appendAsJson(std::string& out, const CheckAnswer& answer, bool oneLine);

/// Appends the problems for people; nothing where there are none.
void appendAsText(std::string& out, const CheckAnswer& answer);

}  // namespace tessel_tool
