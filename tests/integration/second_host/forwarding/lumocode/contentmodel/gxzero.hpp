#pragma once

#include <string>
#include <variant>

#include "own/classes.hpp"

namespace lumocode::contentmodel::gxzero {

inline std::u16string value_type(const EditFieldData& record) {
  const auto found = record.get()->kept.find("valueType");
  return found == record.get()->kept.end() ? std::u16string()
                                           : std::get<std::u16string>(found->second);
}

}  // namespace lumocode::contentmodel::gxzero
