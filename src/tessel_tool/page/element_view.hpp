#pragma once

/// @file
/// Reading elements of any class, by the names of their properties.

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "gx/zero.hpp"

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

  /// What the property holds if it was given a value. The fields of a value all were; a slot or a
  /// sequence is as soon as there is something in it.
  std::optional<gx::zero::ValueMeta> readIfSet(const Property& property) const;

  /// The property of a name if it is there, was set, and holds what is asked for.
  template <typename T>
  std::optional<T> get(std::u16string_view name) const {
    const Property* property = find(name);
    const auto value = property != nullptr ? readIfSet(*property) : std::nullopt;
    const T* held = value ? value->get_if<T>() : nullptr;
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
  gx::zero::ValueMeta read(const Property& property) const;
  const Property* find(std::u16string_view name) const;

  const Impl* element_ = nullptr;
  const gx::zero::ValueStruct* value_ = nullptr;  // exactly one of the two is there
};

}  // namespace tessel_tool
