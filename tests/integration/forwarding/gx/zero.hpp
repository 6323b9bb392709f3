#pragma once

#include <vector>

#include "foreign/gx/zero.hpp"

namespace gx::zero::meta {

inline bool conforms_to(const Type& type, const Class& other) {
  return foreign_conforms_to(type, other);
}

inline Class as_class(const Type& type) {
  return foreign_as_class(type);
}

inline bool is_single_valued(const Property& property) noexcept {
  return foreign_is_single_valued(property);
}

inline const Property* property_or_null(const Property* opposite) noexcept {
  return foreign_property_or_null(opposite);
}

}  // namespace gx::zero::meta

namespace gx::zero {

inline bool admits_once(const ReferenceCollection& collection) noexcept {
  return foreign_admits_once(collection);
}

template <typename Element>
void insert_last(ElementSequence<Element>& sequence, const Element& element) {
  foreign_insert_last(sequence, element);
}

inline const std::vector<ModelElement::Impl*>& elements_of(
    const ReferenceCollection& collection) noexcept {
  return foreign_elements_of(collection);
}

inline ModelElement::Impl* implementation_of(ModelElement::Impl* owner) noexcept {
  return foreign_implementation_of(owner);
}

inline ValueMeta property_value(const ModelElement::Impl& element, const meta::Property& property) {
  return foreign_property_value(element, property);
}

inline unsigned kind_code(const ValueMeta& value) noexcept {
  return foreign_kind_code(value);
}

inline ModelElement held_element(const ValueMeta& value) noexcept {
  return foreign_held_element(value);
}

}  // namespace gx::zero
