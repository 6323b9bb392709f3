#include "export/element_walk.hpp"

#include <stdexcept>
#include <vector>

#include "reference_host/fl/utf16.hpp"

namespace reference_host::exporting {

namespace {

using gx::zero::ModelElement;
using gx::zero::ReferenceCollection;
using gx::zero::ValueMeta;
using gx::zero::ValueStruct;
using gx::zero::meta::Property;

class Walk {
 public:
  explicit Walk(ElementVisitor& visitor) : visitor_(visitor) {}

  void run(const ModelElement& element) {
    enter(element);
    while (!open_.empty()) {
      Frame& frame = open_.back();
      if (frame.next == frame.end) {
        if (frame.sequence != nullptr) {
          visitor_.endSequence();
        } else {
          visitor_.endElement();
        }
        open_.pop_back();
      } else if (frame.sequence != nullptr) {
        enter(ModelElement((*frame.sequence)[frame.next++]));
      } else {
        show(frame.element, propertiesOf(frame.element)[frame.next++]);
      }
    }
  }

 private:
  /// What is open: an element with its properties, or a sequence with its elements.
  struct Frame {
    ModelElement element;
    const std::vector<ModelElement::Impl*>* sequence = nullptr;
    std::size_t next = 0;
    std::size_t end = 0;
  };

  static const std::vector<Property>& propertiesOf(const ModelElement& element) {
    return element.get()->metaClass().get()->getProperties();
  }

  void enter(const ModelElement& element) {
    visitor_.beginElement(
        i18n::ustringToUtf8(element.get()->metaClass().get()->getQualifiedName()));
    open_.push_back({element, nullptr, 0, propertiesOf(element).size()});
  }

  // The frame of the element may move when something in it is entered, so the element comes by
  // value.
  void show(const ModelElement element, const Property& property) {
    if (property.getKind() == Property::Kind::kReference) return;
    const ValueMeta value =
        element.get()->get(property, ModelElement::Impl::ReflectionPrivateTag::PUBLIC_ACCESS);
    if (const auto* contained = value.get_if<ModelElement>()) {
      if (!*contained) return;
      name(property);
      enter(*contained);
      return;
    }
    if (const auto* collection = value.get_if<const ReferenceCollection*>()) {
      const std::vector<ModelElement::Impl*>* elements = &elements_of(**collection);
      if (elements->empty()) return;
      name(property);
      visitor_.beginSequence();
      open_.push_back({ModelElement(), elements, 0, elements->size()});
      return;
    }
    if (!element.get()->isSet(property)) return;
    name(property);
    if (const auto* held = value.get_if<const ValueStruct*>()) {
      showStruct(**held);
    } else {
      showData(value);
    }
  }

  /// All fields, set or not: a value has no more than them.
  void showStruct(const ValueStruct& value) {
    const auto* valueClass = value.metaClass().get();
    visitor_.beginElement(i18n::ustringToUtf8(valueClass->getQualifiedName()));
    for (const Property& property : valueClass->getProperties()) {
      name(property);
      showData(value.reflect(property.getIndex()));
    }
    visitor_.endElement();
  }

  void showData(const ValueMeta& value) {
    if (const auto* text = value.get_if<std::u16string_view>()) {
      visitor_.text(i18n::ustringToUtf8(*text));
    } else if (const auto* number = value.get_if<double>()) {
      visitor_.number(*number);
    } else if (const auto* boolean = value.get_if<bool>()) {
      visitor_.boolean(*boolean);
    } else if (const auto* integer = value.get_if<std::uint64_t>()) {
      visitor_.integer(*integer);
    } else {
      throw std::logic_error("a property holds a kind of value that has no written form");
    }
  }

  void name(const Property& property) {
    visitor_.property(i18n::ustringToUtf8(property.getName()));
  }

  ElementVisitor& visitor_;
  std::vector<Frame> open_;
};

}  // namespace

void walkElement(const ModelElement& element, ElementVisitor& visitor) {
  Walk(visitor).run(element);
}

}  // namespace reference_host::exporting
