#pragma once

/// @file
/// The check of one document, and what is written about it.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "input.hpp"
#include "problem_report.hpp"
#include "reference_host/diagnosis/document_check.hpp"
#include "reference_host/json/text_places.hpp"

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

/// What wants the objects of a document while it is checked, and their places.
class CheckedObjects : public reference_host::diagnosis::ImportObserver {
 public:
  /// JSON pointers to the objects that are to be found in the text, in any order.
  virtual std::vector<std::string> pointers() = 0;
  /// Where they are, in the order of the pointers.
  virtual void place(const std::vector<reference_host::json::ValuePlace>& places,
                     std::string_view text) = 0;

 protected:
  ~CheckedObjects() = default;
};

/// @param objects somebody who wants the objects that an import would build; null if nobody does.
CheckAnswer checkOne(const reference_host::diagnosis::Knowledge& knowledge, Document document,
                     reference_host::diagnosis::Warnings warnings,
                     CheckedObjects* objects = nullptr);

/// Appends the answer as a JSON object and a line feed.
/// @param oneLine one line without white space, else indented.
void appendAsJson(std::string& out, const CheckAnswer& answer, bool oneLine);

/// Appends the problems for people; nothing where there are none.
void appendAsText(std::string& out, const CheckAnswer& answer);

}  // namespace tessel_tool
