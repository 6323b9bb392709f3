#pragma once

/// @file
/// Appending to the model's sequences.

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
bool contains(const gx::zero::ReferenceCollection& sequence, const gx::zero::ModelElement& element);

/// Puts the element behind the last one of the sequence, which then is its container if it
/// contains its elements. An empty handle is passed over, and so is an element that is there
/// already in a sequence that admits it once.
/// @throws whatever the model throws, for example for an element of another model. The sequence is
///         unchanged then.
void append(gx::zero::ReferenceCollection& sequence, const gx::zero::ModelElement& element);

}  // namespace tessel::build::json::controls::framework
