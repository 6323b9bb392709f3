#pragma once

#include <string>

#include "own/values.hpp"

namespace foundation::json {

template <typename T>
const T* get_if(const Value& value) {
  return value.held<T>();
}

inline const Value* find_member(const Value& value, const std::string& key) {
  return get_if<Members>(value) != nullptr ? value.find(key) : nullptr;
}

}  // namespace foundation::json
