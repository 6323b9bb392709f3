#pragma once

/// @file
/// The descriptions of the model's types, classes and properties.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "foundation/export.hpp"

namespace gx::zero::meta {

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
    /// Whether what is of this type is what the class says. A data type conforms to no class; a
    /// class conforms to itself, to those it derives from, and to `Class::metaClass()`.
    virtual bool conformsTo(const Class& other) const;

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

/// One property of a class: a field, a slot for an element, a sequence of elements, or a struct:
/// a value made of fields.
class TESSEL_HOST_API Property {
 public:
  /// What a property holds; the numbers are the kind codes of its values.
  enum class Kind : std::uint8_t {
    kReference = 0,
    kContained = 1,
    kData = 2,
    kSequence = 3,
    kStruct = 4
  };

  /// @param type asked when the type is, since a class may have properties of its own type.
  /// @param index the property's place in `Class::Impl::getProperties` of its class.
  Property(std::u16string name, Type (*type)(), Kind kind, std::size_t index);

  const std::u16string& getName() const noexcept { return name_; }
  Type getType() const { return type_(); }
  Kind getKind() const noexcept { return kind_; }
  std::size_t getIndex() const noexcept { return index_; }
  /// True when it holds any number of elements, false when it holds at most one value.
  bool isMany() const noexcept { return kind_ == Kind::kSequence; }

 private:
  std::u16string name_;
  Type (*type_)();
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
    bool conformsTo(const Class& other) const override;

   private:
    const Impl* base_;
    std::vector<Property> properties_;
  };

  /// The class of classes.
  static Class metaClass();

  Class() noexcept = default;
  explicit Class(const Impl* impl) noexcept : Type(impl) {}

  const Impl* get() const noexcept { return static_cast<const Impl*>(Type::get()); }
};

/// Whether what is of the type is what the class says.
inline bool conforms_to(const Type& type, const Class& other) {
  return type.get()->conformsTo(other);
}

/// The type as a class; empty when it is none.
inline Class as_class(const Type& type) {
  return Class(dynamic_cast<const Class::Impl*>(type.get()));
}

inline bool is_single_valued(const Property& property) noexcept {
  return !property.isMany();
}

/// What a collection's `getOpposite()` returned, as a pointer: null when there is none.
inline const Property* property_or_null(const Property* opposite) noexcept {
  return opposite;
}

}  // namespace gx::zero::meta
