#include "gx/zero/collection.hpp"

#include <algorithm>
#include <stdexcept>

namespace gx::zero {

AbstractOwnedCollection::Operation::Operation(AbstractOwnedCollection& collection) noexcept
    : collection_(collection), sizeBefore_(collection.elements_.size()) {
  ++collection_.owner_.model_->operationCounts_.opened;
}

AbstractOwnedCollection::Operation::~Operation() {
  auto& elements = collection_.elements_;
  if (!committed_ && elements.size() > sizeBefore_) {
    elements.erase(elements.begin() + static_cast<std::ptrdiff_t>(sizeBefore_), elements.end());
  }
}

void AbstractOwnedCollection::Operation::commit() noexcept {
  committed_ = true;
  collection_.owner_.markSet(collection_.traits_.propertyIndex);
  ++collection_.owner_.model_->operationCounts_.committed;
}

const meta::Property& AbstractOwnedCollection::getCollectionProperty() const {
  return owner_.metaClass().get()->getProperties().at(traits_.propertyIndex);
}

void AbstractOwnedCollection::insertLast(ModelElement::Impl* element) {
  elements_.push_back(element);
}

void AbstractOwnedCollection::drop(const ModelElement::Impl* element) noexcept {
  elements_.erase(std::remove(elements_.begin(), elements_.end(), element), elements_.end());
}

void ReferenceCollection::checkCompatibleModel(ModelElement::Impl* element) const {
  if (element->getModel().get() != getOwner()->getModel().get()) {
    throw std::invalid_argument("the element belongs to another model");
  }
}

}  // namespace gx::zero
