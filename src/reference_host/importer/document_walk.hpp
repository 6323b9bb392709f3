#pragma once

/// @file
/// A position in a JSON document, and the steps from object to object.

#include <cstddef>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

#include "foundation/json.hpp"

namespace reference_host::importer {

/// Visits the objects of a document depth first, members in the map's order. Works at any nesting
/// depth; once it has been as deep as it will get, stepping allocates nothing.
/// @tparam Value a constant value, or one that is given up: of that, each element and member is
///   emptied when the walk has left it.
template <typename Value>
class BasicDocumentWalk {
 public:
  /// Starts before the first object. The document must outlive the walk and is left to it.
  explicit BasicDocumentWalk(Value& document) : document_(&document) {}

  /// The next object; null at the end. It goes into the object before only when told to by
  /// `goInto`.
  Value* nextObject();

  /// Makes the next step go into the object that the walk stands at.
  void goInto() { pending_ = current_; }

  /// The JSON pointer (RFC 6901) of the object that the walk stands at.
  std::string pointer() const;

 private:
  static constexpr bool kConsumes = !std::is_const_v<Value>;
  using Array = typename Value::Array;
  using Object = typename Value::Object;
  struct ArrayPlace {
    std::conditional_t<kConsumes, Array, const Array>* elements;
    std::size_t index;
  };
  struct ObjectPlace {
    using Iterator =
        std::conditional_t<kConsumes, typename Object::iterator, typename Object::const_iterator>;
    Iterator member;
    Iterator end;
  };
  using Place = std::variant<ArrayPlace, ObjectPlace>;

  /// Opens a container at its first child; false when it has none or the value is no container.
  bool open(Value& value);
  /// Moves to the next sibling, closing the containers that have no more; false at the end.
  bool advance();
  static Value* valueAt(const Place& place);
  static bool moveOn(Place& place);

  Value* document_;           // until the first step
  Value* current_ = nullptr;  // the object that the walk stands at
  Value* pending_ = nullptr;  // the object to go into with the next step
  std::vector<Place> path_;   // one place for each container around the current value
};

extern template class BasicDocumentWalk<const foundation::json::Value>;
extern template class BasicDocumentWalk<foundation::json::Value>;

using DocumentWalk = BasicDocumentWalk<const foundation::json::Value>;

}  // namespace reference_host::importer
