#pragma once

/// @file
/// A position in a JSON document, and the steps from object to object.

#include <cstddef>
#include <string>
#include <variant>
#include <vector>

#include "foundation/json.hpp"

namespace reference_host::importer {

/// Visits the objects of a document depth first, members in the map's order. Works at any nesting
/// depth; once it has been as deep as it will get, stepping allocates nothing.
class DocumentWalk {
 public:
  /// Starts before the first object. The document must outlive the walk and stay as it is.
  explicit DocumentWalk(const foundation::json::Value& document) : document_(&document) {}

  /// The next object; null at the end. It goes into the object before only when told to by
  /// `goInto`.
  const foundation::json::Value* nextObject();

  /// Makes the next step go into the object that the walk stands at.
  void goInto() { pending_ = current_; }

  /// The JSON pointer (RFC 6901) of the object that the walk stands at.
  std::string pointer() const;

 private:
  using Value = foundation::json::Value;
  struct ArrayPlace {
    const Value::Array* elements;
    std::size_t index;
  };
  struct ObjectPlace {
    Value::Object::const_iterator member;
    Value::Object::const_iterator end;
  };
  using Place = std::variant<ArrayPlace, ObjectPlace>;

  /// Opens a container at its first child; false when it has none or the value is no container.
  bool open(const Value& value);
  /// Moves to the next sibling, closing the containers that have no more; false at the end.
  bool advance();
  static const Value* valueAt(const Place& place);
  static bool moveOn(Place& place);

  const Value* document_;           // until the first step
  const Value* current_ = nullptr;  // the object that the walk stands at
  const Value* pending_ = nullptr;  // the object to go into with the next step
  std::vector<Place> path_;         // one place for each container around the current value
};

}  // namespace reference_host::importer
