#pragma once

/// @file
/// A document with all that a page shows of it.

#include <cstddef>
#include <string>
#include <vector>

#include "check_answer.hpp"
#include "document/gxzero.hpp"
#include "input.hpp"
#include "reference_host/diagnosis/knowledge.hpp"
#include "reference_host/importer/importer.hpp"

namespace tessel_tool {

/// A document that was checked and imported.
struct ReadDocument {
  /// An object that came to something: a control that arrived, or one that failed.
  struct Object {
    static constexpr std::size_t kFailed = static_cast<std::size_t>(-1);

    std::string pointer;
    std::size_t node;                  ///< its index in the result
    std::vector<std::string> records;  ///< if they are shown
    std::size_t line = 0;              ///< of the text, where the object begins
    std::size_t begin = 0;             ///< in the text
    std::size_t end = 0;
  };

  CheckAnswer check;  ///< with the document and its text
  std::vector<document::gxzero::Node> nodes;
  std::size_t failedObjects = 0;
  std::size_t passedOver = 0;   ///< children of controls that are or look like controls
  std::vector<Object> objects;  ///< in the order of the text

  /// Drops what there is: memory did not suffice for the document.
  void runOutOfMemory();
  /// Whether the document or an element of it failed.
  bool failed() const { return check.errors != 0 || !check.failure.empty(); }
  /// Why the document failed as a whole, as an import says it; empty where it did not.
  std::string failure() const;
};

ReadDocument readDocument(const reference_host::diagnosis::Knowledge& knowledge, Document document,
                          reference_host::importer::OnError onError, bool withLog);

}  // namespace tessel_tool
