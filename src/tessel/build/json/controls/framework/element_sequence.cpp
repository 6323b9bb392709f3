#include "framework/element_sequence.hpp"

namespace tessel::build::json::controls::framework {

namespace {

using gx::zero::ModelElement;
using gx::zero::ValueMeta;
using gx::zero::meta::Class;

bool isModelElement(const ValueMeta& value) {
  const auto type = value.getType();
  if (!held_element(value)) return conforms_to(type, Class::metaClass());
  if (kind_code(value) > 1) return false;
  const Class elementClass = as_class(type);
  return elementClass && conforms_to(elementClass, ModelElement::metaClass());
}

}  // namespace

void requireModelElement(const ValueMeta& value) {
  if (isModelElement(value)) return;
  throw foundation::core::except::with_argument<CannotCastIncompatibleTypes>(
      value.getType().get()->getQualifiedName());
}

}  // namespace tessel::build::json::controls::framework
