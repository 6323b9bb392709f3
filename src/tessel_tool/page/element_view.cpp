#include "page/element_view.hpp"

#include <algorithm>
#include <utility>

namespace tessel_tool {

using gx::zero::ModelElement;
using gx::zero::ReferenceCollection;
using gx::zero::ValueMeta;
using gx::zero::meta::Class;
using gx::zero::meta::Property;

const Class::Impl& ElementView::metaClass() const {
  return *(element_ != nullptr ? element_->metaClass() : value_->metaClass()).get();
}

std::optional<ValueMeta> ElementView::readIfSet(const Property& property) const {
  const bool isData =
      property.getKind() == Property::Kind::kData || property.getKind() == Property::Kind::kStruct;
  if (element_ != nullptr && isData && !element_->isSet(property)) return std::nullopt;
  ValueMeta value = read(property);
  if (element_ == nullptr || isData) return value;
  const auto* sequence = value.get_if<const ReferenceCollection*>();
  const bool isThere = sequence != nullptr ? (*sequence)->size() != 0
                                           : static_cast<bool>(gx::zero::held_element(value));
  return isThere ? std::optional(std::move(value)) : std::nullopt;
}

ValueMeta ElementView::read(const Property& property) const {
  return element_ != nullptr ? gx::zero::property_value(*element_, property)
                             : value_->reflect(property.getIndex());
}

std::optional<ElementView> ElementView::element(std::u16string_view name) const {
  const Property* property = find(name);
  return property != nullptr ? element(*property) : std::nullopt;
}

std::optional<ElementView> ElementView::element(const Property& property) const {
  const std::optional<ValueMeta> value = readIfSet(property);
  if (!value) return std::nullopt;
  if (const auto* held = value->get_if<ModelElement>(); held != nullptr && *held) {
    return ElementView(*held->get());
  }
  const auto* held = value->get_if<const gx::zero::ValueStruct*>();
  return held != nullptr ? std::optional<ElementView>(**held) : std::nullopt;
}

const std::vector<ModelElement::Impl*>& ElementView::elements(std::u16string_view name) const {
  static const std::vector<ModelElement::Impl*> none;
  const auto sequence = get<const ReferenceCollection*>(name);
  return sequence ? elements_of(**sequence) : none;
}

const Property* ElementView::find(std::u16string_view name) const {
  const std::vector<Property>& properties = metaClass().getProperties();
  const auto found =
      std::find_if(properties.begin(), properties.end(),
                   [&](const Property& property) { return property.getName() == name; });
  return found == properties.end() ? nullptr : &*found;
}

}  // namespace tessel_tool
