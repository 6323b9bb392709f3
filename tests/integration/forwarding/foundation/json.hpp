#pragma once

#include "foreign/foundation/json.hpp"

namespace foundation::json {

template <typename T>
const T* get_if(const Value& value) noexcept {
  return value.foreign_get_if<T>();
}

}  // namespace foundation::json
