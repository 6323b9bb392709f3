#pragma once

#include "foreign/foundation/json.hpp"

namespace foundation::json {

template <typename T>
const T* get_if(const Value& value) noexcept {
  return value.foreign_get_if<T>();
}

inline const Value* find_member(const Value& value, const std::string& key) {
  return value.hasOwnProperty(key) ? &value[key] : nullptr;
}

}  // namespace foundation::json
