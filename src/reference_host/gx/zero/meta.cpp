#include <utility>

#include "gx/zero.hpp"

namespace gx::zero::meta {

Type::Impl::Impl(std::u16string qualifiedName) : qualifiedName_(std::move(qualifiedName)) {}

Type::Impl::~Impl() = default;

bool Type::Impl::conformsTo(const Class&) const {
  return false;
}

Type Type::text() {
  static const Impl impl(u"gx::zero::types::Text");
  return Type(&impl);
}

Type Type::number() {
  static const Impl impl(u"gx::zero::types::Number");
  return Type(&impl);
}

Type Type::boolean() {
  static const Impl impl(u"gx::zero::types::Boolean");
  return Type(&impl);
}

Type Type::integer() {
  static const Impl impl(u"gx::zero::types::Integer");
  return Type(&impl);
}

Property::Property(std::u16string name, Type (*type)(), Kind kind, std::size_t index)
    : name_(std::move(name)), type_(type), kind_(kind), index_(index) {}

Class Class::metaClass() {
  static const Impl impl(u"gx::zero::meta::Class", Class(), {});
  return Class(&impl);
}

Class::Impl::Impl(std::u16string qualifiedName, Class base, std::vector<Property> ownProperties)
    : Type::Impl(std::move(qualifiedName)), base_(base.get()) {
  if (base_ != nullptr) properties_ = base_->properties_;
  for (Property& property : ownProperties) properties_.push_back(std::move(property));
}

Class::Impl::~Impl() = default;

Class Class::Impl::getSuperClass() const noexcept {
  return Class(base_);
}

bool Class::Impl::conformsTo(const Class& other) const {
  if (other == Class::metaClass()) return true;
  for (const Impl* candidate = this; candidate != nullptr; candidate = candidate->base_) {
    if (candidate == other.get()) return true;
  }
  return false;
}

}  // namespace gx::zero::meta
