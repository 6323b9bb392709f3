#include "importer/document_walk.hpp"

#include <utility>

#include "reference_host/json/pointer.hpp"

namespace reference_host::importer {

using json::appendToken;

template <typename Value>
Value* BasicDocumentWalk<Value>::nextObject() {
  Value* value = nullptr;
  if (document_ != nullptr) {
    value = std::exchange(document_, nullptr);
  } else {
    Value* const container = std::exchange(pending_, nullptr);
    const bool entered = container != nullptr && open(*container);
    if (!entered && !advance()) return current_ = nullptr;
    value = valueAt(path_.back());
  }
  while (value->template get_if<Object>() == nullptr) {
    if (!open(*value) && !advance()) return current_ = nullptr;
    value = valueAt(path_.back());
  }
  return current_ = value;
}

template <typename Value>
std::string BasicDocumentWalk<Value>::pointer() const {
  std::string pointer;
  for (const Place& place : path_) {
    if (const auto* array = std::get_if<ArrayPlace>(&place)) {
      appendToken(pointer, std::to_string(array->index));
    } else {
      appendToken(pointer, std::get_if<ObjectPlace>(&place)->member->first);
    }
  }
  return pointer;
}

template <typename Value>
bool BasicDocumentWalk<Value>::open(Value& value) {
  if (auto* elements = value.template get_if<Array>()) {
    if (elements->empty()) return false;
    path_.emplace_back(ArrayPlace{elements, 0});
    return true;
  }
  if (auto* members = value.template get_if<Object>()) {
    if (members->empty()) return false;
    path_.emplace_back(ObjectPlace{members->begin(), members->end()});
    return true;
  }
  return false;
}

template <typename Value>
bool BasicDocumentWalk<Value>::advance() {
  while (!path_.empty()) {
    if (moveOn(path_.back())) return true;
    path_.pop_back();
  }
  return false;
}

template <typename Value>
Value* BasicDocumentWalk<Value>::valueAt(const Place& place) {
  if (const auto* array = std::get_if<ArrayPlace>(&place)) return &(*array->elements)[array->index];
  return &std::get_if<ObjectPlace>(&place)->member->second;
}

template <typename Value>
bool BasicDocumentWalk<Value>::moveOn(Place& place) {
  if constexpr (kConsumes) valueAt(place)->template emplace<foundation::json::Undefined>();
  if (auto* array = std::get_if<ArrayPlace>(&place)) {
    return ++array->index != array->elements->size();
  }
  auto* object = std::get_if<ObjectPlace>(&place);
  return ++object->member != object->end;
}

template class BasicDocumentWalk<const foundation::json::Value>;
template class BasicDocumentWalk<foundation::json::Value>;

}  // namespace reference_host::importer
