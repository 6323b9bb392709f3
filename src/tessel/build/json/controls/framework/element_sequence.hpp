#pragma once

/// @file
/// Appending to the model's sequences.

#include <algorithm>
#include <exception>

#include "foundation/except.hpp"
#include "gx/zero.hpp"

namespace tessel::build::json::controls::framework {

/// Raised for a property value that had to hold a model element. Its one message argument is the
/// qualified name of the value's type.
using CannotCastIncompatibleTypes =
    foundation::core::except::Exception<gx0::messages::CannotCastIncompatibleTypes, std::exception>;

/// Lets a property value pass that holds a model element, or none but is of a class type.
/// @throws CannotCastIncompatibleTypes for any other value.
void requireModelElement(const gx::zero::ValueMeta& value);

/// Whether the sequence holds the element. One that is empty or a proxy is in no sequence.
template <typename Element>
bool contains(const gx::zero::ElementSequence<Element>& sequence, const Element& element) {
  if (!element || element.get()->isProxy()) return false;
  const auto& opposite = sequence.getOpposite();
  const gx::zero::meta::Property* property = property_or_null(opposite);
  if (property != nullptr && is_single_valued(*property)) {
    // What the element says itself is one look; the sequence may be long.
    const gx::zero::ValueMeta container = property_value(*element.get(), *property);
    requireModelElement(container);
    return held_element(container).get() == implementation_of(sequence.getOwner());
  }
  const auto& elements = elements_of(sequence);
  return std::find(elements.begin(), elements.end(), element.get()) != elements.end();
}

/// Puts the element behind the last one of the sequence, which then is its container if it
/// contains its elements. An empty handle is passed over, and so is an element that is there
/// already in a sequence that admits it once.
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
