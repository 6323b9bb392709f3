#include "importer/document_walk.hpp"

#include <utility>

#include "reference_host/json/pointer.hpp"

namespace reference_host::importer {

using json::appendToken;

const foundation::json::Value* DocumentWalk::nextObject() {
  const Value* value = nullptr;
  if (document_ != nullptr) {
    value = std::exchange(document_, nullptr);
  } else {
    const Value* const container = std::exchange(pending_, nullptr);
    const bool entered = container != nullptr && open(*container);
    if (!entered && !advance()) return current_ = nullptr;
    value = valueAt(path_.back());
  }
  while (value->get_if<Value::Object>() == nullptr) {
    if (!open(*value) && !advance()) return current_ = nullptr;
    value = valueAt(path_.back());
  }
  return current_ = value;
}

std::string DocumentWalk::pointer() const {
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

bool DocumentWalk::open(const Value& value) {
  if (const auto* elements = value.get_if<Value::Array>()) {
    if (elements->empty()) return false;
    path_.emplace_back(ArrayPlace{elements, 0});
    return true;
  }
  if (const auto* members = value.get_if<Value::Object>()) {
    if (members->empty()) return false;
    path_.emplace_back(ObjectPlace{members->begin(), members->end()});
    return true;
  }
  return false;
}

bool DocumentWalk::advance() {
  while (!path_.empty()) {
    if (moveOn(path_.back())) return true;
    path_.pop_back();
  }
  return false;
}

const foundation::json::Value* DocumentWalk::valueAt(const Place& place) {
  if (const auto* array = std::get_if<ArrayPlace>(&place)) return &(*array->elements)[array->index];
  return &std::get_if<ObjectPlace>(&place)->member->second;
}

bool DocumentWalk::moveOn(Place& place) {
  if (auto* array = std::get_if<ArrayPlace>(&place)) {
    return ++array->index != array->elements->size();
  }
  auto* object = std::get_if<ObjectPlace>(&place);
  return ++object->member != object->end;
}

}  // namespace reference_host::importer
