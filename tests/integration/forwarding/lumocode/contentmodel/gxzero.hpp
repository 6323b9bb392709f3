#pragma once

#include <string>

#include "foreign/lumocode/contentmodel/gxzero.hpp"

namespace lumocode::contentmodel::gxzero {

inline const std::u16string& value_type(const EditFieldData& element) noexcept {
  return foreign_value_type(element);
}

}  // namespace lumocode::contentmodel::gxzero
