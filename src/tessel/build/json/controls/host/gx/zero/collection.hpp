#pragma once

/// @file
/// Sequences of elements. Included by gx/zero.hpp.

#include <cstddef>
#include <vector>

#include "foundation/export.hpp"
#include "gx/zero.hpp"

namespace gx::zero {

/// How a collection treats its elements.
struct CollectionTraits {
  std::size_t propertyIndex = 0;  ///< of the owner's class: which property the collection is
  bool composite = true;          ///< whether the owner contains the elements
  bool admitsOnce = true;         ///< whether an element can be in it at most once
  const meta::Property* opposite = nullptr;  ///< the elements' property that refers back, if any
};

/// A collection of elements that one element owns as the value of one of its properties.
class TESSEL_HOST_API AbstractOwnedCollection {
 public:
  /// The unit of change of a collection. One that is closed without a commit leaves the collection
  /// as it was.
  class TESSEL_HOST_API Operation {
   public:
    explicit Operation(AbstractOwnedCollection& collection) noexcept;
    ~Operation();
    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;

    void commit() noexcept;

   private:
    AbstractOwnedCollection& collection_;
    std::size_t sizeBefore_;
    bool committed_ = false;
  };

  AbstractOwnedCollection(ModelElement::Impl& owner, const CollectionTraits& traits) noexcept
      : owner_(owner), traits_(traits) {}
  AbstractOwnedCollection(const AbstractOwnedCollection&) = delete;
  AbstractOwnedCollection& operator=(const AbstractOwnedCollection&) = delete;

  ModelElement::Impl* getOwner() const noexcept { return &owner_; }
  const meta::Property& getCollectionProperty() const;

 protected:
  ~AbstractOwnedCollection() = default;

  const CollectionTraits& traits() const noexcept { return traits_; }
  const std::vector<ModelElement::Impl*>& elements() const noexcept { return elements_; }
  void insertLast(ModelElement::Impl* element);
  void drop(const ModelElement::Impl* element) noexcept;

 private:
  ModelElement::Impl& owner_;
  CollectionTraits traits_;
  std::vector<ModelElement::Impl*> elements_;
};

/// A collection as the framework's own operations see it.
class TESSEL_HOST_API ReferenceCollection : public AbstractOwnedCollection {
 public:
  using AbstractOwnedCollection::AbstractOwnedCollection;

  /// @throws std::invalid_argument when the element belongs to another model than the owner.
  void checkCompatibleModel(ModelElement::Impl* element) const;
  bool isComposite() const noexcept { return traits().composite; }
  /// Null when there is none.
  const meta::Property* getOpposite() const noexcept { return traits().opposite; }

  std::size_t size() const noexcept { return elements().size(); }

 protected:
  ~ReferenceCollection() = default;

 private:
  friend bool admits_once(const ReferenceCollection& collection) noexcept;
  friend const std::vector<ModelElement::Impl*>& elements_of(
      const ReferenceCollection& collection) noexcept;
};

/// Whether an element can be in the collection at most once.
inline bool admits_once(const ReferenceCollection& collection) noexcept {
  return collection.traits().admitsOnce;
}

/// The elements, in order.
inline const std::vector<ModelElement::Impl*>& elements_of(
    const ReferenceCollection& collection) noexcept {
  return collection.elements();
}

/// The ordered collection of elements of one class.
template <typename Element>
class ElementSequence final : public ReferenceCollection {
 public:
  using ReferenceCollection::ReferenceCollection;

  Element operator[](std::size_t index) const {
    return Element(static_cast<typename Element::Impl*>(elements()[index]));
  }

  /// Takes an element out that has a new owner.
  void dropElement(const ModelElement::Impl* element) noexcept { drop(element); }

 private:
  template <typename E>
  friend void insert_last(ElementSequence<E>& sequence, const E& element);
};

/// Inserts a reference to an element behind the last one, and nothing else: no test, no owner.
template <typename Element>
void insert_last(ElementSequence<Element>& sequence, const Element& element) {
  sequence.insertLast(element.get());
}

}  // namespace gx::zero
