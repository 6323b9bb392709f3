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

namespace gx::zero {

class Model;
class ModelElement;
class ValueMeta;

namespace meta {

class Class;

/// A type of the model: a data type or a class. Descriptions are immutable and never end.
class TESSEL_HOST_API Type {
 public:
  class TESSEL_HOST_API Impl {
   public:
    explicit Impl(std::u16string qualifiedName);
    virtual ~Impl();
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    const std::u16string& getQualifiedName() const noexcept { return qualifiedName_; }

   private:
    std::u16string qualifiedName_;
  };

  Type() noexcept = default;
  explicit Type(const Impl* impl) noexcept : impl_(impl) {}

  const Impl* get() const noexcept { return impl_; }
  explicit operator bool() const noexcept { return impl_ != nullptr; }
  friend bool operator==(Type left, Type right) noexcept { return left.impl_ == right.impl_; }
  friend bool operator!=(Type left, Type right) noexcept { return !(left == right); }

  static Type text();     ///< UTF-16 text
  static Type number();   ///< `double`
  static Type boolean();  ///< `bool`
  static Type integer();  ///< unsigned, at most 64 bits

 private:
  const Impl* impl_ = nullptr;
};

/// One property of a class: a field, or a slot that contains an element.
class TESSEL_HOST_API Property {
 public:
  /// What a property holds; the numbers are the kind codes of its values.
  enum class Kind : std::uint8_t { kReference = 0, kContained = 1, kData = 2 };

  /// @param index the property's place in `Class::Impl::getProperties` of its class.
  Property(std::u16string name, Type type, Kind kind, std::size_t index);

  const std::u16string& getName() const noexcept { return name_; }
  Type getType() const noexcept { return type_; }
  Kind getKind() const noexcept { return kind_; }
  std::size_t getIndex() const noexcept { return index_; }

 private:
  std::u16string name_;
  Type type_;
  Kind kind_;
  std::size_t index_;
};

/// The description of a model class.
class TESSEL_HOST_API Class : public Type {
 public:
  class TESSEL_HOST_API Impl : public Type::Impl {
   public:
    /// @param base an empty handle for a class that derives from nothing.
    /// @param ownProperties the properties that the class adds to those of its base.
    Impl(std::u16string qualifiedName, Class base, std::vector<Property> ownProperties);
    ~Impl() override;

    Class getSuperClass() const noexcept;
    /// Every property of an element of this class, the base's first.
    const std::vector<Property>& getProperties() const noexcept { return properties_; }
    /// True for the class itself and for each class it derives from.
    bool conformsTo(Class other) const noexcept;

   private:
    const Impl* base_;
    std::vector<Property> properties_;
  };

  Class() noexcept = default;
  explicit Class(const Impl* impl) noexcept : Type(impl) {}

  const Impl* get() const noexcept { return static_cast<const Impl*>(Type::get()); }
};

}  // namespace meta

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

  /// Makes this element the owner of another one, which then is no root any more.
  void _setContainedByThis(ModelElement::Impl* element, const meta::Property& property);

 protected:
  explicit Impl(const Creation& creation) noexcept;

  void markSet(std::size_t propertyIndex) noexcept { setProperties_ |= 1U << propertyIndex; }
  /// Puts a new element in a slot of this one; what stood there before, if anything, is a root
  /// again.
  void replaceContained(Impl* previous, Impl* created, std::size_t propertyIndex);
  /// The value of the property at an index of `metaClass().get()->getProperties()`.
  virtual ValueMeta reflect(std::size_t propertyIndex) const;

 private:
  friend class ModelElement;
  void requireOwnProperty(const meta::Property& property) const;

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
  Impl() = default;
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

  /// Creates an element; element classes call this from their create operations.
  template <typename ElementImpl>
  ElementImpl* createElement(const boost::uuids::uuid& uuid) {
    auto element = std::make_unique<ElementImpl>(Creation(*this, uuid, elements_.size()));
    ElementImpl* created = element.get();
    elements_.push_back(std::move(element));
    return created;
  }

 private:
  friend class Model;
  friend class ModelElement;
  void releaseHandle() noexcept;
  void releaseHeldElement() noexcept;

  std::vector<std::unique_ptr<ModelElement::Impl>> elements_;
  std::size_t handleCount_ = 0;
  std::size_t heldElements_ = 0;
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

  meta::Type getType() const noexcept { return type_; }
  /// The kind code: 0 and 1 for values that hold a model element by right.
  meta::Property::Kind getKind() const noexcept { return kind_; }

  /// The held alternative if it is exactly `T`, else null: `ModelElement`, `std::u16string_view`,
  /// `double`, `bool` or `std::uint64_t`.
  template <typename T>
  const T* get_if() const noexcept {
    return std::get_if<T>(&held_);
  }

 private:
  meta::Type type_;
  meta::Property::Kind kind_;
  std::variant<ModelElement, std::u16string_view, double, bool, std::uint64_t> held_;
};

inline void ModelElement::addRef() const noexcept {
  if (impl_ != nullptr && impl_->handleCount_++ == 0) ++impl_->model_->heldElements_;
}

inline void ModelElement::release() const noexcept {
  if (impl_ != nullptr && --impl_->handleCount_ == 0) impl_->model_->releaseHeldElement();
}

}  // namespace gx::zero
