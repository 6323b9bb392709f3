#pragma once

#include <vector>

#include "foreign/gx/zero.hpp"

namespace gx::zero {

inline bool admits_once(const ReferenceCollection& collection) noexcept {
  return foreign_admits_once(collection);
}

inline void insert_last(ReferenceCollection& collection, ModelElement::Impl* element) {
  foreign_insert_last(collection, element);
}

inline const std::vector<ModelElement::Impl*>& elements_of(
    const ReferenceCollection& collection) noexcept {
  return foreign_elements_of(collection);
}

inline unsigned kind_code(const ValueMeta& value) noexcept {
  return foreign_kind_code(value);
}

inline ModelElement held_element(const ValueMeta& value) noexcept {
  return foreign_held_element(value);
}

}  // namespace gx::zero
