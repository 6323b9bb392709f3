#include <stdexcept>
#include <utility>

#include "gx/zero.hpp"

namespace gx::zero {

Model Model::create() {
  return Model(new Impl);
}

Model::Model(Impl* impl) noexcept : impl_(impl) {
  if (impl_ != nullptr) ++impl_->handleCount_;
}

Model::Model(const Model& other) noexcept : Model(other.impl_) {}

Model::~Model() {
  if (impl_ != nullptr) impl_->releaseHandle();
}

Model::Impl::~Impl() = default;

std::vector<ModelElement> Model::Impl::getRoots() const {
  std::vector<ModelElement> roots;
  for (const auto& element : elements_) {
    if (!element->getOwner()) roots.emplace_back(element.get());
  }
  return roots;
}

void Model::Impl::releaseHandle() noexcept {
  if (--handleCount_ == 0 && heldElements_ == 0) delete this;
}

void Model::Impl::releaseHeldElement() noexcept {
  if (--heldElements_ == 0 && handleCount_ == 0) delete this;
}

meta::Class ModelElement::metaClass() {
  static const meta::Class::Impl impl(u"gx::zero::ModelElement", meta::Class(), {});
  return meta::Class(&impl);
}

ModelElement::Impl::Impl(const Creation& creation) noexcept
    : model_(&creation.model()),
      number_(creation.number()),
      requestedUuid_(creation.requestedUuid()) {}

ModelElement::Impl::~Impl() = default;

Model ModelElement::Impl::getModel() const noexcept {
  return Model(model_);
}

bool ModelElement::Impl::isSet(const meta::Property& property) const {
  requireOwnProperty(property);
  return ((setProperties_ >> property.getIndex()) & 1U) != 0;
}

ValueMeta ModelElement::Impl::get(const meta::Property& property, ReflectionPrivateTag) const {
  requireOwnProperty(property);
  return reflect(property.getIndex());
}

void ModelElement::Impl::_setContainedByThis(ModelElement::Impl* element,
                                             const meta::Property& property) {
  requireOwnProperty(property);
  element->owner_ = this;
}

void ModelElement::Impl::replaceContained(Impl* previous, Impl* created,
                                          std::size_t propertyIndex) {
  if (previous != nullptr) previous->owner_ = nullptr;
  _setContainedByThis(created, metaClass().get()->getProperties()[propertyIndex]);
  markSet(propertyIndex);
}

ValueMeta ModelElement::Impl::reflect(std::size_t) const {
  throw std::logic_error("an element class does not reflect one of its properties");
}

void ModelElement::Impl::requireOwnProperty(const meta::Property& property) const {
  const auto& properties = metaClass().get()->getProperties();
  if (property.getIndex() >= properties.size() ||
      properties[property.getIndex()].getName() != property.getName()) {
    throw std::invalid_argument("the property is none of the element's class");
  }
}

ValueMeta::ValueMeta(meta::Type type, meta::Property::Kind kind, ModelElement element) noexcept
    : type_(type), kind_(kind), held_(std::move(element)) {}

ValueMeta::ValueMeta(std::u16string_view text)
    : type_(meta::Type::text()), kind_(meta::Property::Kind::kData), held_(text) {}

ValueMeta::ValueMeta(double number)
    : type_(meta::Type::number()), kind_(meta::Property::Kind::kData), held_(number) {}

ValueMeta::ValueMeta(bool boolean)
    : type_(meta::Type::boolean()), kind_(meta::Property::Kind::kData), held_(boolean) {}

ValueMeta::ValueMeta(std::uint64_t integer)
    : type_(meta::Type::integer()), kind_(meta::Property::Kind::kData), held_(integer) {}

}  // namespace gx::zero
