#pragma once

/// @file
/// All problems of a document.

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "document/gxzero.hpp"
#include "foundation/export.hpp"
#include "foundation/json.hpp"
#include "reference_host/diagnosis/knowledge.hpp"
#include "reference_host/diagnosis/problem.hpp"

namespace reference_host::diagnosis {

struct DocumentProblems {
  std::vector<Problem> problems;  ///< in the order in which they were found
  std::size_t objects = 0;        ///< offered to the builders
  std::size_t claimed = 0;        ///< of those, claimed by some builder
};

enum class Warnings { kNo, kYes };

/// Told of what a check makes of the objects of a document, in the walk's order: what an import
/// would.
class TESSEL_HOST_API ImportObserver {
 public:
  /// An object is about to be offered to the builders.
  virtual void offered() = 0;
  /// The object offered last is built.
  virtual void built(document::gxzero::Node node, std::string pointer) = 0;
  /// An import would tell an error of the object offered last.
  virtual void failed(std::string pointer) = 0;

 protected:
  ImportObserver() = default;
  ImportObserver(const ImportObserver&) = default;
  ImportObserver& operator=(const ImportObserver&) = default;
  ~ImportObserver() = default;
};

/// Walks a document as an import does and tells the problems of all its objects. Each object of
/// which an import tells an error has at least one error here, and no other object has any.
/// Duplicate members, which only the text shows, are not among them.
/// @param text what the document was parsed from, without a byte order mark.
/// @param firstLine where in the input the text begins, for hints that name a line.
/// @param observer somebody who wants what is built, all in one model; null if nobody does.
TESSEL_HOST_API DocumentProblems checkDocument(const Knowledge& knowledge,
                                               const foundation::json::Value& document,
                                               std::string_view text, Warnings warnings,
                                               std::size_t firstLine = 1,
                                               ImportObserver* observer = nullptr);

/// What a walk of a document offers to the builders. It asks them once for each object.
class TESSEL_HOST_API OfferedObjects {
 public:
  /// @param knowledge of the builders; outlives this, as does the document.
  OfferedObjects(const Knowledge& knowledge, const foundation::json::Value& document)
      : knowledge_(knowledge), document_(document) {}

  /// The pointer of the object that is offered last on the way to a value: the innermost one around
  /// it, or the one that the walk does not go into.
  std::string around(const std::string& pointer);

 private:
  bool isGoneInto(const foundation::json::Value& object);

  const Knowledge& knowledge_;
  const foundation::json::Value& document_;
  std::unordered_map<const foundation::json::Value*, bool> goneInto_;
};

}  // namespace reference_host::diagnosis
