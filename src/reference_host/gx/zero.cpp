#include <atomic>
#include <cstddef>
#include <limits>
#include <stdexcept>
#include <utility>

#include "gx/zero.hpp"

#include "reference_host/gx/live_models.hpp"

namespace {

std::atomic<std::size_t> liveModels{0};

}  // namespace

std::size_t reference_host::countLiveModels() noexcept {
  return liveModels;
}

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

Model::Impl::Impl() noexcept {
  ++liveModels;
}

Model::Impl::~Impl() {
  --liveModels;
}

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

const meta::Property& ModelElement::containerProperty() {
  // An index that no class reaches, so that it is nobody else's.
  static const meta::Property property(
      u"container", []() -> meta::Type { return metaClass(); }, meta::Property::Kind::kReference,
      std::numeric_limits<std::size_t>::max());
  return property;
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

bool ModelElement::Impl::isProxy() const noexcept {
  return false;
}

ValueMeta ModelElement::Impl::get(const meta::Property& property, ReflectionPrivateTag) const {
  if (&property == &containerProperty()) {
    return {owner_ != nullptr ? owner_->metaClass() : ModelElement::metaClass(), property.getKind(),
            ModelElement(owner_)};
  }
  requireOwnProperty(property);
  return reflect(property.getIndex());
}

void ModelElement::Impl::_setContainedByThis(ModelElement::Impl* element,
                                             const meta::Property& property) {
  requireOwnProperty(property);
  own(element);
}

void ModelElement::Impl::_inverseAddThis(ModelElement::Impl* element,
                                         const meta::Property& opposite, bool addHere) {
  if (&opposite != &containerProperty() || addHere) {
    throw std::invalid_argument("the container is the only opposite of a property");
  }
  own(element);
}

void ModelElement::Impl::own(Impl* element) {
  for (const Impl* container = this; container != nullptr; container = container->owner_) {
    if (container == element) throw std::invalid_argument("an element cannot contain itself");
  }
  if (element->owner_ != nullptr && element->owner_ != this) {
    element->owner_->dropContained(element);
  }
  element->owner_ = this;
}

void ModelElement::Impl::replaceContained(Impl* previous, Impl* next, std::size_t propertyIndex) {
  if (next != nullptr) {
    if (next->model_ != model_) {
      throw std::invalid_argument("the element belongs to another model");
    }
    own(next);
  }
  if (previous != nullptr && previous != next) previous->owner_ = nullptr;
  markSet(propertyIndex);
}

void ModelElement::Impl::dropContained(const Impl*) noexcept {}

ValueMeta ModelElement::Impl::reflect(std::size_t) const {
  throw std::logic_error("an element class does not reflect one of its properties");
}

void ModelElement::Impl::requireOwnProperty(const meta::Property& property) const {
  const auto& properties = metaClass().get()->getProperties();
  const auto isSame = [&property](const meta::Property& other) {
    return &other == &property ||
           (other.getName() == property.getName() && other.getType() == property.getType() &&
            other.getKind() == property.getKind());
  };
  const std::size_t index = property.getIndex();
  if (index >= properties.size() || !isSame(properties[index])) {
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

ValueMeta::ValueMeta(meta::Type elementType, const ReferenceCollection& sequence) noexcept
    : type_(elementType), kind_(meta::Property::Kind::kSequence), held_(&sequence) {}

ValueMeta::ValueMeta(const ValueStruct& value)
    : type_(value.metaClass()), kind_(meta::Property::Kind::kStruct), held_(&value) {}

ValueStruct::~ValueStruct() = default;

ValueMeta::ValueMeta(std::uint64_t integer)
    : type_(meta::Type::integer()), kind_(meta::Property::Kind::kData), held_(integer) {}

}  // namespace gx::zero
