#pragma once

#include <memory>
#include <vector>

#include "own/framework.hpp"

namespace gx::zero::meta {

inline bool conforms_to(const Type& type, const Class& other) {
  return type.is(other);
}

inline Class as_class(const Type& type) {
  return type.get()->isClass ? type : Class();
}

inline bool is_single_valued(const Property& property) {
  return !property.plural();
}

inline const Property* property_or_null(const Property& opposite) {
  return opposite ? &opposite : nullptr;
}

}  // namespace gx::zero::meta

namespace gx::zero {

template <typename Element>
bool admits_once(const ElementSequence<Element>& sequence) {
  return sequence.unique();
}

template <typename Element>
void insert_last(ElementSequence<Element>& sequence, const Element& element) {
  sequence.adopt(element);
}

template <typename Element>
std::vector<ModelElementImpl*> elements_of(const ElementSequence<Element>& sequence) {
  return sequence.implementations();
}

inline ModelElementImpl* implementation_of(const ModelElement& owner) {
  return owner.get();
}

inline ValueMeta property_value(const ModelElementImpl& element, const meta::Property& property) {
  return element.reflect(property, ModelElementImpl::ReflectionPrivateTag::PUBLIC_ACCESS);
}

inline ModelElement held_element(const ValueMeta& value) {
  return value.element;
}

inline unsigned kind_code(const ValueMeta& value) {
  return value.code;
}

}  // namespace gx::zero
