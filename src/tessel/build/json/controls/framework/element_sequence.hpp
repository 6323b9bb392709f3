#pragma once

/// @file
/// Appending to the model's sequences.

#include <algorithm>
#include <exception>

#include "foundation/except.hpp"
#include "gx/zero.hpp"

namespace tessel::build::json::controls::framework {

/// Thrown if a property value holds no model element. Its one message argument is the qualified
/// name of the value's type.
using CannotCastIncompatibleTypes =
    foundation::core::except::Exception<gx0::messages::CannotCastIncompatibleTypes, std::exception>;

/// Accepts a property value that holds a model element, or that is empty and of a class type.
/// @throws CannotCastIncompatibleTypes for any other value.
void requireModelElement(const gx::zero::ValueMeta& value);

/// Whether the sequence holds the element. Answers false for an empty handle and for a proxy.
template <typename Element>
bool contains(const gx::zero::ElementSequence<Element>& sequence, const Element& element) {
  if (!element || element.get()->isProxy()) return false;
  const auto& opposite = sequence.getOpposite();
  const gx::zero::meta::Property* property = property_or_null(opposite);
  if (property != nullptr && is_single_valued(*property)) {
    // The sequence may be long, so ask the element for its container.
    const gx::zero::ValueMeta container = property_value(*element.get(), *property);
    requireModelElement(container);
    return held_element(container).get() == implementation_of(sequence.getOwner());
  }
  const auto& elements = elements_of(sequence);
  return std::find(elements.begin(), elements.end(), element.get()) != elements.end();
}

/// Inserts the element at the end of the sequence. A sequence that contains its elements becomes
/// its container. Does nothing for an empty handle, or if the sequence admits an element only once
/// and holds it already.
/// @throws whatever the model throws, for example for an element of another model. The sequence is
///         unchanged then.
template <typename Element>
void append(gx::zero::ElementSequence<Element>& sequence, const Element& element) {
  if (!element) return;
  sequence.checkCompatibleModel(element.get());
  if (admits_once(sequence) && contains(sequence, element)) return;

  gx::zero::AbstractOwnedCollection::Operation operation(sequence);
  insert_last(sequence, element);
  if (!element.get()->isProxy()) {
    const auto& opposite = sequence.getOpposite();
    if (const gx::zero::meta::Property* property = property_or_null(opposite)) {
      implementation_of(sequence.getOwner())->_inverseAddThis(element.get(), *property, false);
    } else if (sequence.isComposite()) {
      implementation_of(sequence.getOwner())
          ->_setContainedByThis(element.get(), sequence.getCollectionProperty());
    }
  }
  operation.commit();
}

}  // namespace tessel::build::json::controls::framework
