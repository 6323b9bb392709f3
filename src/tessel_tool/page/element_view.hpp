#pragma once

/// @file
/// Reading elements of any class, by the names of their properties.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "gx/zero.hpp"
#include "page/html_text.hpp"

namespace tessel_tool {

/// What holds properties: an element, or a value made of fields. The holder outlives the view.
class ElementView {
 public:
  using Impl = gx::zero::ModelElement::Impl;
  using Property = gx::zero::meta::Property;

  explicit ElementView(const Impl& element) noexcept : element_(&element) {}
  explicit ElementView(const gx::zero::ValueStruct& value) noexcept : value_(&value) {}

  const gx::zero::meta::Class::Impl& metaClass() const;
  const std::u16string& className() const { return metaClass().getQualifiedName(); }

  /// Whether the property was given a value. The fields of a value all were; a slot or a sequence
  /// is as soon as there is something in it.
  bool isSet(const Property& property) const;
  gx::zero::ValueMeta read(const Property& property) const;

  /// The property of a name if it is there, was set, and holds what is asked for.
  template <typename T>
  std::optional<T> get(std::u16string_view name) const {
    const Property* property = find(name);
    if (property == nullptr || !isSet(*property)) return std::nullopt;
    const gx::zero::ValueMeta value = read(*property);
    const T* held = value.get_if<T>();
    return held == nullptr ? std::nullopt : std::optional<T>(*held);
  }
  /// The same for a text, which is empty where there is none.
  std::u16string_view text(std::u16string_view name) const {
    return get<std::u16string_view>(name).value_or(std::u16string_view());
  }
  std::optional<ElementView> element(std::u16string_view name) const;
  std::optional<ElementView> element(const Property& property) const;
  /// The elements of a sequence; none where there is no sequence.
  const std::vector<Impl*>& elements(std::u16string_view name) const;

 private:
  const Property* find(std::u16string_view name) const;

  const Impl* element_ = nullptr;
  const gx::zero::ValueStruct* value_ = nullptr;  // exactly one of the two is there
};

/// The names of a class and its properties, for people.
struct NamedClass {
  struct NamedProperty {
    const gx::zero::meta::Property* property;
    std::string name;
    std::string type;
    // As they stand in a table of properties, once they have been there.
    HtmlText rowStart{};
    HtmlText unsetRow{};
  };

  std::string name;                       ///< without its namespace
  std::vector<NamedProperty> properties;  ///< but references
};

/// The classes met so far.
class ClassNames {
 public:
  NamedClass& of(const gx::zero::meta::Class::Impl& described);

 private:
  std::unordered_map<const gx::zero::meta::Class::Impl*, NamedClass> known_;
};

}  // namespace tessel_tool
