#include "framework/element_sequence.hpp"

#include <algorithm>

namespace tessel::build::json::controls::framework {

namespace {

using gx::zero::AbstractOwnedCollection;
using gx::zero::ModelElement;
using gx::zero::ReferenceCollection;
using gx::zero::ValueMeta;
using gx::zero::meta::Class;
using gx::zero::meta::Property;

bool isModelElement(const ValueMeta& value) {
  const auto type = value.getType();
  if (!held_element(value)) return type.get()->conformsTo(Class::metaClass());
  if (kind_code(value) > 1) return false;
  const Class elementClass(dynamic_cast<const Class::Impl*>(type.get()));
  return elementClass && elementClass.get()->conformsTo(ModelElement::metaClass());
}

/// For an element that is no proxy.
bool holds(const ReferenceCollection& sequence, const ModelElement& element) {
  const Property* opposite = sequence.getOpposite();
  if (opposite != nullptr && !opposite->isMany()) {
    // What the element says itself is one look; the sequence may be long.
    const ValueMeta container =
        element.get()->get(*opposite, ModelElement::Impl::ReflectionPrivateTag::PUBLIC_ACCESS);
    requireModelElement(container);
    return held_element(container).get() == sequence.getOwner();
  }
  const auto& elements = elements_of(sequence);
  return std::find(elements.begin(), elements.end(), element.get()) != elements.end();
}

}  // namespace

void requireModelElement(const ValueMeta& value) {
  if (!isModelElement(value)) {
    throw CannotCastIncompatibleTypes({value.getType().get()->getQualifiedName()});
  }
}

bool contains(const ReferenceCollection& sequence, const ModelElement& element) {
  return element && !element.get()->isProxy() && holds(sequence, element);
}

void append(ReferenceCollection& sequence, const ModelElement& element) {
  if (!element) return;
  sequence.checkCompatibleModel(element.get());
  if (admits_once(sequence) && contains(sequence, element)) return;

  AbstractOwnedCollection::Operation operation(sequence);
  insert_last(sequence, element.get());
  if (!element.get()->isProxy()) {
    if (const Property* opposite = sequence.getOpposite()) {
      sequence.getOwner()->_inverseAddThis(element.get(), *opposite, false);
    } else if (sequence.isComposite()) {
      sequence.getOwner()->_setContainedByThis(element.get(), sequence.getCollectionProperty());
    }
  }
  operation.commit();
}

}  // namespace tessel::build::json::controls::framework
