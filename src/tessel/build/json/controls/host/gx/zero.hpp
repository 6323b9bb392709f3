#pragma once

/// @file
/// The model framework: models, their elements, and the metaclasses that describe them.
///
/// A model owns every element created in it, for as long as the model lives; creating is the only
/// way in and nothing is ever taken out. A model lives while a `Model` handle or a handle on one
/// of its elements exists. One model is used by one thread at a time; different models are
/// independent of each other.

#include <boost/uuid/uuid.hpp>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "foundation/export.hpp"
#include "gx/zero/meta.hpp"

namespace gx::zero {

class Model;
class ModelElement;
class ReferenceCollection;
class ValueMeta;
class ValueStruct;

/// A model: a counted handle on it. A default-constructed handle is empty.
class TESSEL_HOST_API Model {
 public:
  class Impl;

  /// A new model without elements.
  static Model create();

  Model() noexcept = default;
  explicit Model(Impl* impl) noexcept;
  Model(const Model& other) noexcept;
  Model(Model&& other) noexcept : impl_(std::exchange(other.impl_, nullptr)) {}
  Model& operator=(Model other) noexcept {
    std::swap(impl_, other.impl_);
    return *this;
  }
  ~Model();

  Impl* get() const noexcept { return impl_; }
  explicit operator bool() const noexcept { return impl_ != nullptr; }

 private:
  Impl* impl_ = nullptr;
};

/// An element of a model: a counted handle on it, and the base of every element class's handle.
/// Converting to a base class's handle copies the pointer and adds a reference; moving does not.
class TESSEL_HOST_API ModelElement {
 public:
  class Impl;

  static meta::Class metaClass();
  /// What contains an element. Every element has it and no class lists it; it is read like any
  /// other property, and is the opposite of the sequences that contain.
  static const meta::Property& containerProperty();

  ModelElement() noexcept = default;
  explicit ModelElement(Impl* impl) noexcept : impl_(impl) { addRef(); }
  ModelElement(const ModelElement& other) noexcept : impl_(other.impl_) { addRef(); }
  ModelElement(ModelElement&& other) noexcept : impl_(std::exchange(other.impl_, nullptr)) {}
  ModelElement& operator=(const ModelElement& other) noexcept {
    ModelElement copy(other);
    std::swap(impl_, copy.impl_);
    return *this;
  }
  ModelElement& operator=(ModelElement&& other) noexcept {
    std::swap(impl_, other.impl_);
    return *this;
  }
  ~ModelElement() { release(); }

  Impl* get() const noexcept { return impl_; }
  explicit operator bool() const noexcept { return impl_ != nullptr; }
  friend bool operator==(const ModelElement& left, const ModelElement& right) noexcept {
    return left.impl_ == right.impl_;
  }
  friend bool operator!=(const ModelElement& left, const ModelElement& right) noexcept {
    return !(left == right);
  }

 private:
  void addRef() const noexcept;
  void release() const noexcept;

  Impl* impl_ = nullptr;
};

/// What an element is created with; only a model can make one.
class Creation {
 public:
  Model::Impl& model() const noexcept { return model_; }
  const boost::uuids::uuid& requestedUuid() const noexcept { return requestedUuid_; }
  std::uint64_t number() const noexcept { return number_; }

 private:
  friend class Model::Impl;
  Creation(Model::Impl& model, const boost::uuids::uuid& uuid, std::uint64_t number) noexcept
      : model_(model), requestedUuid_(uuid), number_(number) {}

  Model::Impl& model_;
  const boost::uuids::uuid& requestedUuid_;
  std::uint64_t number_;
};

/// The implementation object of an element. New texts are empty, numbers 0, flags false, slots
/// empty, and no property counts as set.
class TESSEL_HOST_API ModelElement::Impl {
 public:
  /// Says that a reflective read comes from outside the element's own class.
  enum class ReflectionPrivateTag { PUBLIC_ACCESS };

  virtual ~Impl();
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  virtual meta::Class metaClass() const = 0;
  /// True for an element that stands for one that is not loaded.
  virtual bool isProxy() const noexcept;

  Model getModel() const noexcept;
  /// The element that contains this one; empty for a root of the model.
  ModelElement getOwner() const noexcept { return ModelElement(owner_); }
  /// The identity of an element created with the nil uuid: its number in creation order, from 0.
  std::uint64_t getNumber() const noexcept { return number_; }
  /// The uuid that the creation call asked for.
  const boost::uuids::uuid& getRequestedUuid() const noexcept { return requestedUuid_; }
  /// How many handles refer to this element now; the model and the owner hold none.
  std::size_t getHandleCount() const noexcept { return handleCount_; }

  /// True once the property was given a value, also one equal to the initial value.
  bool isSet(const meta::Property& property) const;
  /// The property's value now.
  /// @throws std::invalid_argument when the property is none of this element's class.
  ValueMeta get(const meta::Property& property, ReflectionPrivateTag tag) const;

  /// Makes this element the owner of another one, which then is no root any more, and leaves the
  /// owner it had. (Between two slots or sequences of one owner nothing is moved.)
  /// @throws std::invalid_argument when the other one contains this element.
  void _setContainedByThis(ModelElement::Impl* element, const meta::Property& property);
  /// Writes this element into the opposite property of one that it now refers to.
  /// @param opposite the container property: our only opposite.
  /// @param addHere whether this side is yet to be added; always false here.
  /// @throws std::invalid_argument as `_setContainedByThis`.
  void _inverseAddThis(ModelElement::Impl* element, const meta::Property& opposite, bool addHere);

 protected:
  explicit Impl(const Creation& creation) noexcept;

  void markSet(std::size_t propertyIndex) noexcept { setProperties_ |= 1U << propertyIndex; }
  /// Puts an element, or none, into a slot of this one; what stood there before is a root again.
  /// @throws std::invalid_argument as `_setContainedByThis`, and for an element of another model;
  ///         nothing has changed then.
  void replaceContained(Impl* previous, Impl* next, std::size_t propertyIndex);
  /// Empties the slot or sequence that holds an element, which has a new owner.
  virtual void dropContained(const Impl* element) noexcept;
  /// The value of the property at an index of `metaClass().get()->getProperties()`.
  virtual ValueMeta reflect(std::size_t propertyIndex) const;

 private:
  friend class AbstractOwnedCollection;
  friend class ModelElement;
  void requireOwnProperty(const meta::Property& property) const;
  void own(Impl* element);

  Model::Impl* model_;
  Impl* owner_ = nullptr;
  std::size_t handleCount_ = 0;
  std::uint64_t number_;
  boost::uuids::uuid requestedUuid_;
  std::uint32_t setProperties_ = 0;  // one bit a property, by index
};

/// The implementation object of a model.
class TESSEL_HOST_API Model::Impl {
 public:
  Impl() noexcept;
  ~Impl();
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  /// Every element, in creation order.
  const std::vector<std::unique_ptr<ModelElement::Impl>>& getElements() const noexcept {
    return elements_;
  }
  /// The elements that nothing contains, in creation order.
  std::vector<ModelElement> getRoots() const;
  /// How many of the model's elements are referred to by a handle now.
  std::size_t getHeldElementCount() const noexcept { return heldElements_; }

  /// How many operations on collections of the model were opened, and how many committed.
  struct OperationCounts {
    std::size_t opened = 0;
    std::size_t committed = 0;
  };
  const OperationCounts& getOperationCounts() const noexcept { return operationCounts_; }

  /// Creates an element; element classes call this from their create operations.
  template <typename ElementImpl>
  ElementImpl* createElement(const boost::uuids::uuid& uuid) {
    auto element = std::make_unique<ElementImpl>(Creation(*this, uuid, elements_.size()));
    ElementImpl* created = element.get();
    elements_.push_back(std::move(element));
    return created;
  }

 private:
  friend class AbstractOwnedCollection;
  friend class Model;
  friend class ModelElement;
  void releaseHandle() noexcept;
  void releaseHeldElement() noexcept;

  std::vector<std::unique_ptr<ModelElement::Impl>> elements_;
  std::size_t handleCount_ = 0;
  std::size_t heldElements_ = 0;
  OperationCounts operationCounts_;
};

/// A property's value as reflection hands it out, with its type.
class TESSEL_HOST_API ValueMeta {
 public:
  /// An element, or an empty slot.
  ValueMeta(meta::Type type, meta::Property::Kind kind, ModelElement element) noexcept;
  /// UTF-16 text; the view lasts until the property is set again.
  explicit ValueMeta(std::u16string_view text);
  explicit ValueMeta(double number);
  explicit ValueMeta(bool boolean);
  explicit ValueMeta(std::uint64_t integer);
  /// A sequence of elements; the pointer lasts as long as the model.
  ValueMeta(meta::Type elementType, const ReferenceCollection& sequence) noexcept;
  /// A value made of fields; the pointer lasts until the property is set again.
  explicit ValueMeta(const ValueStruct& value);

  meta::Type getType() const noexcept { return type_; }
  /// What kind of property the value is of.
  meta::Property::Kind getKind() const noexcept { return kind_; }

  /// The held alternative if it is exactly `T`, else null: `ModelElement`, `std::u16string_view`,
  /// `double`, `bool`, `std::uint64_t`, `const ReferenceCollection*` or
  /// `const ValueStruct*`.
  template <typename T>
  const T* get_if() const noexcept {
    return std::get_if<T>(&held_);
  }

 private:
  meta::Type type_;
  meta::Property::Kind kind_;
  std::variant<ModelElement, std::u16string_view, double, bool, std::uint64_t,
               const ReferenceCollection*, const ValueStruct*>
      held_;
};

/// A value made of fields. Unlike an element it belongs to no model and is copied.
class TESSEL_HOST_API ValueStruct {
 public:
  virtual ~ValueStruct();

  virtual meta::Class metaClass() const = 0;
  /// The value of a field, by its index in `metaClass().get()->getProperties()`.
  virtual ValueMeta reflect(std::size_t propertyIndex) const = 0;

 protected:
  ValueStruct() = default;
  ValueStruct(const ValueStruct&) = default;
  ValueStruct(ValueStruct&&) noexcept = default;
  ValueStruct& operator=(const ValueStruct&) = default;
  ValueStruct& operator=(ValueStruct&&) noexcept = default;
};

/// The kind code of a value: 0 for a reference, 1 for a contained element, more for anything else.
inline unsigned kind_code(const ValueMeta& value) noexcept {
  return static_cast<unsigned>(value.getKind());
}

/// The element that a value holds; empty when it holds none.
inline ModelElement held_element(const ValueMeta& value) noexcept {
  const auto* element = value.get_if<ModelElement>();
  return element != nullptr ? *element : ModelElement();
}

/// An element's property as reflection reads it from outside.
inline ValueMeta property_value(const ModelElement::Impl& element, const meta::Property& property) {
  return element.get(property, ModelElement::Impl::ReflectionPrivateTag::PUBLIC_ACCESS);
}

/// What a collection's `getOwner()` returned, as a pointer.
inline ModelElement::Impl* implementation_of(ModelElement::Impl* owner) noexcept {
  return owner;
}

inline void ModelElement::addRef() const noexcept {
  if (impl_ != nullptr && impl_->handleCount_++ == 0) ++impl_->model_->heldElements_;
}

inline void ModelElement::release() const noexcept {
  if (impl_ != nullptr && --impl_->handleCount_ == 0) impl_->model_->releaseHeldElement();
}

}  // namespace gx::zero

#include "gx/zero/collection.hpp"
