#include "page/element_view.hpp"

#include <algorithm>

#include "reference_host/fl/utf16.hpp"
#include "text_form.hpp"

namespace tessel_tool {

using gx::zero::ModelElement;
using gx::zero::ReferenceCollection;
using gx::zero::ValueMeta;
using gx::zero::meta::Class;
using gx::zero::meta::Property;
using reference_host::i18n::ustringToUtf8;

namespace {

/// The name of a type, "number" as well as "ButtonData".
std::string typeName(const gx::zero::meta::Type& type) {
  constexpr std::string_view kDataTypes = "gx::zero::types::";
  const std::string qualified = ustringToUtf8(type.get()->getQualifiedName());
  std::string name(shortName(qualified));
  if (qualified.compare(0, kDataTypes.size(), kDataTypes) == 0 && !name.empty()) {
    name.front() = static_cast<char>(name.front() | 0x20);  // they begin with a capital
  }
  return name;
}

}  // namespace

const Class::Impl& ElementView::metaClass() const {
  return *(element_ != nullptr ? element_->metaClass() : value_->metaClass()).get();
}

bool ElementView::isSet(const Property& property) const {
  if (value_ != nullptr) return true;
  if (property.getKind() == Property::Kind::kData ||
      property.getKind() == Property::Kind::kStruct) {
    return element_->isSet(property);
  }
  const ValueMeta value = read(property);
  if (const auto* sequence = value.get_if<const ReferenceCollection*>()) {
    return (*sequence)->size() != 0;
  }
  return static_cast<bool>(gx::zero::held_element(value));
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
  const ValueMeta value = read(property);
  if (const auto* held = value.get_if<ModelElement>(); held != nullptr && *held) {
    return ElementView(*held->get());
  }
  if (const auto* held = value.get_if<const gx::zero::ValueStruct*>();
      held != nullptr && isSet(property)) {
    return ElementView(**held);
  }
  return std::nullopt;
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

NamedClass& ClassNames::of(const Class::Impl& described) {
  const auto known = known_.find(&described);
  if (known != known_.end()) return known->second;
  NamedClass named{std::string(shortName(ustringToUtf8(described.getQualifiedName()))), {}};
  for (const Property& property : described.getProperties()) {
    if (property.getKind() == Property::Kind::kReference) continue;
    named.properties.push_back(
        {&property, ustringToUtf8(property.getName()), typeName(property.getType())});
  }
  return known_.emplace(&described, std::move(named)).first->second;
}

}  // namespace tessel_tool
