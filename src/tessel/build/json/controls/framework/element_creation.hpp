#pragma once

/// @file
/// Creating elements in a model.

#include <boost/uuid/uuid.hpp>

#include "gx/zero.hpp"

namespace tessel::build::json::controls::framework {

/// Every element is created with the nil uuid: the model chooses its identity.
inline constexpr boost::uuids::uuid kNilUuid{};

/// Creates an element as a root of the model.
/// @param create the create operation of the element class's `Builder`.
template <typename Element, typename Factory>
Element createInModel(const gx::zero::Model& model,
                      Element (Factory::*create)(const boost::uuids::uuid&)) {
  typename Element::Builder builder(model);
  return (builder.*create)(kNilUuid);
}

/// Creates an element in a slot of its owner.
/// @param createInto the owner's create-into operation for the slot.
template <typename Element, typename Owner, typename OwnerImpl>
Element createInOwner(const Owner& owner,
                      Element (OwnerImpl::*createInto)(typename Element::BuilderWrapper,
                                                       const boost::uuids::uuid&)) {
  return (owner.get()->*createInto)(typename Element::BuilderWrapper(typename Element::Builder()),
                                    kNilUuid);
}

}  // namespace tessel::build::json::controls::framework
