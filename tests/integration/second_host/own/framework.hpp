#pragma once

/// @file
/// The model framework of the second host. A handle is a shared pointer, handles of two classes are
/// unrelated types that convert, and an element is a bag of named values.

#include <boost/uuid/uuid.hpp>
#include <cstdint>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace gx::zero::meta {

/// A handle on a type. Classes are those types that say so.
class Type {
 public:
  struct Impl {
    std::u16string getQualifiedName() const { return name; }

    std::u16string name;
    bool isClass;
  };

  Type() = default;
  Type(std::u16string name, bool isClass)
      : impl_(std::make_shared<const Impl>(Impl{std::move(name), isClass})) {}
  static const Type& metaClass() {
    static const Type type(u"Class", true);
    return type;
  }
  explicit operator bool() const { return impl_ != nullptr; }
  const Impl* get() const { return impl_.get(); }
  bool is(const Type& other) const {
    return other.get() == metaClass().get() ? get()->isClass : get() == other.get();
  }

 private:
  std::shared_ptr<const Impl> impl_;
};
using Class = Type;

/// A handle on a property; an empty one is none.
class Property {
 public:
  Property() = default;
  Property(const char* name, bool plural) : name_(name), plural_(plural) {}
  explicit operator bool() const { return name_ != nullptr; }
  bool plural() const { return plural_; }

 private:
  const char* name_ = nullptr;
  bool plural_ = false;
};

}  // namespace gx::zero::meta

namespace gx::zero {

struct ModelElementImpl;

template <typename ElementImpl>
class Handle {
 public:
  using Impl = ElementImpl;
  class Builder;
  struct BuilderWrapper {
    explicit BuilderWrapper(const Builder&) {}
  };

  static const meta::Class& metaClass() {
    static const meta::Class type(u"Element", true);
    return type;
  }

  Handle() = default;
  explicit Handle(std::shared_ptr<Impl> impl) : impl_(std::move(impl)) {}
  template <typename Derived, typename = std::enable_if_t<std::is_base_of_v<Impl, Derived>>>
  Handle(const Handle<Derived>& other) : impl_(other.shared()) {}

  Impl* get() const { return impl_.get(); }
  const std::shared_ptr<Impl>& shared() const { return impl_; }
  explicit operator bool() const { return impl_ != nullptr; }

 private:
  std::shared_ptr<Impl> impl_;
};

/// Offers what the element class's own base of builders offers.
template <typename ElementImpl>
class Handle<ElementImpl>::Builder : public ElementImpl::template BuilderBase<Builder> {
  using Base = typename ElementImpl::template BuilderBase<Builder>;

 public:
  using Base::Base;
};

using ModelElement = Handle<ModelElementImpl>;

class Model {
 public:
  /// Everything that was created, in order.
  std::vector<ModelElement>& elements() const { return *elements_; }

 private:
  std::shared_ptr<std::vector<ModelElement>> elements_ =
      std::make_shared<std::vector<ModelElement>>();
};

struct ValueMeta {
  meta::Type getType() const { return type; }

  ModelElement element;
  meta::Type type;
  unsigned code;
};

/// Values by the names of their properties.
struct Bag {
  using Held = std::variant<std::u16string, double, bool, unsigned long long, ModelElement>;

  template <typename T>
  bool keep(const std::string& name, T value) {
    kept[name] = std::move(value);
    return true;
  }
  bool keep(const std::string& name, unsigned short value) {
    return keep<unsigned long long>(name, value);
  }
  /// What another bag holds, each below the name.
  bool keepAll(const std::string& name, const Bag& bag) {
    for (const auto& [each, value] : bag.kept) kept[name + '.' + each] = value;
    return true;
  }

  std::map<std::string, Held> kept;
};

struct ModelElementImpl : Bag, std::enable_shared_from_this<ModelElementImpl> {
  enum class ReflectionPrivateTag { PUBLIC_ACCESS };
  template <typename>
  struct BuilderBase {};  // for an element that its owner creates

  virtual ~ModelElementImpl() = default;
  bool isProxy() const { return false; }
  ValueMeta reflect(const meta::Property&, ReflectionPrivateTag) const {
    return {container != nullptr ? ModelElement(container->shared_from_this()) : ModelElement(),
            ModelElement::metaClass(), 0};
  }
  void _setContainedByThis(ModelElementImpl* element, const meta::Property&) {
    element->container = this;
  }
  void _inverseAddThis(ModelElementImpl* element, const meta::Property&, bool) {
    element->container = this;
  }

  template <typename Impl>
  Handle<Impl> keepNew(const char* name, const boost::uuids::uuid& uuid);

  std::vector<ModelElement>* model = nullptr;
  ModelElementImpl* container = nullptr;
  std::map<std::string, std::vector<ModelElementImpl*>> lists;
};

/// The host gives identities itself and takes none.
template <typename Impl>
Handle<Impl> create(std::vector<ModelElement>& model, const boost::uuids::uuid& uuid) {
  if (!uuid.is_nil()) throw std::invalid_argument("an identity was asked for");
  const Handle<Impl> element(std::make_shared<Impl>());
  element.get()->model = &model;
  model.push_back(element);
  return element;
}

template <typename Impl>
Handle<Impl> ModelElementImpl::keepNew(const char* name, const boost::uuids::uuid& uuid) {
  const auto element = create<Impl>(*model, uuid);
  element.get()->container = this;
  keep(name, ModelElement(element));
  return element;
}

/// The base of the builders of what stands in the model by itself.
class Creator {
 public:
  explicit Creator(Model model) : model_(std::move(model)) {}

 protected:
  template <typename Impl>
  Handle<Impl> create(const boost::uuids::uuid& uuid) {
    return gx::zero::create<Impl>(model_.elements(), uuid);
  }

 private:
  Model model_;
};

class AbstractOwnedCollection {
 public:
  class Operation {
   public:
    explicit Operation(AbstractOwnedCollection& collection) : collection_(collection) {}
    void commit() { ++collection_.commits; }

   private:
    AbstractOwnedCollection& collection_;
  };

  AbstractOwnedCollection(ModelElementImpl& owner, const char* name, meta::Property opposite)
      : owner_(owner), name_(name), opposite_(opposite) {}
  ModelElement getOwner() const { return ModelElement(owner_.shared_from_this()); }
  meta::Property getCollectionProperty() const { return {name_, true}; }
  void checkCompatibleModel(ModelElementImpl* element) const {
    if (element->model != owner_.model) throw std::invalid_argument("of another model");
  }
  bool isComposite() const { return true; }
  meta::Property getOpposite() const { return opposite_; }

  int commits = 0;

 protected:
  std::vector<ModelElementImpl*>& list() const { return owner_.lists[name_]; }

 private:
  ModelElementImpl& owner_;
  const char* name_;
  meta::Property opposite_;
};

/// What is put in is a handle on exactly this class.
template <typename Element>
class ElementSequence : public AbstractOwnedCollection {
 public:
  using AbstractOwnedCollection::AbstractOwnedCollection;
  bool unique() const { return true; }
  void adopt(const Element& element) { list().push_back(element.get()); }
  std::vector<ModelElementImpl*> implementations() const { return list(); }
};

}  // namespace gx::zero
