#include "export/element_walk.hpp"

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "reference_host/json/text_writer.hpp"

namespace reference_host::exporting {

namespace {

using gx::zero::ModelElement;
using gx::zero::ReferenceCollection;
using gx::zero::ValueMeta;
using gx::zero::ValueStruct;
using gx::zero::meta::Class;
using gx::zero::meta::Property;

std::string quoted(std::u16string_view name) {
  std::string text;
  json::appendText(text, name);
  return text;
}

class Walk {
 public:
  Walk(NameTable& names, ElementVisitor& visitor) : names_(names), visitor_(visitor) {}

  void run(const ModelElement::Impl& element) {
    enter(element);
    while (!open_.empty()) {
      Frame& frame = open_.back();
      if (frame.sequence != nullptr) {
        if (frame.next != frame.sequence->size()) {
          enter(*(*frame.sequence)[frame.next++]);
          continue;
        }
        visitor_.endSequence();
      } else {
        if (frame.next != frame.names->properties.size()) {
          const std::size_t index = frame.next++;
          // Another frame moves this one, so the parts of it go by themselves.
          show(*frame.element, (*frame.properties)[index], frame.names->properties[index]);
          continue;
        }
        visitor_.endElement();
      }
      open_.pop_back();
    }
  }

 private:
  using Sequence = std::vector<ModelElement::Impl*>;

  /// What is open: an element with its properties, or a sequence with its elements.
  struct Frame {
    const Sequence* sequence = nullptr;
    const ModelElement::Impl* element = nullptr;
    const std::vector<Property>* properties = nullptr;
    const ClassNames* names = nullptr;
    std::size_t next = 0;
  };

  const ClassNames& namesOf(const Class::Impl& described) {
    const auto known = names_.find(&described);
    if (known != names_.end()) return known->second;
    ClassNames names{quoted(described.getQualifiedName()), {}};
    for (const Property& property : described.getProperties()) {
      names.properties.push_back(quoted(property.getName()));
    }
    return names_.emplace(&described, std::move(names)).first->second;
  }

  void enter(const ModelElement::Impl& element) {
    const Class::Impl& elementClass = *element.metaClass().get();
    const ClassNames& names = namesOf(elementClass);
    visitor_.beginElement(names.qualifiedName);
    open_.push_back({nullptr, &element, &elementClass.getProperties(), &names});
  }

  void show(const ModelElement::Impl& element, const Property& property, std::string_view name) {
    switch (property.getKind()) {
      case Property::Kind::kReference:
        return;
      case Property::Kind::kContained:
      case Property::Kind::kSequence:
        break;
      case Property::Kind::kData:
      case Property::Kind::kStruct:
        if (!element.isSet(property)) return;
    }
    const ValueMeta value =
        element.get(property, ModelElement::Impl::ReflectionPrivateTag::PUBLIC_ACCESS);
    if (const auto* contained = value.get_if<ModelElement>()) {
      if (!*contained) return;
      visitor_.property(name);
      enter(*contained->get());
    } else if (const auto* collection = value.get_if<const ReferenceCollection*>()) {
      const Sequence& elements = elements_of(**collection);
      if (elements.empty()) return;
      visitor_.property(name);
      visitor_.beginSequence();
      open_.push_back({&elements});
    } else {
      visitor_.property(name);
      if (const auto* held = value.get_if<const ValueStruct*>()) {
        showStruct(**held);
      } else {
        showData(value);
      }
    }
  }

  /// All fields, set or not: a value has no more than them.
  void showStruct(const ValueStruct& value) {
    const Class::Impl& valueClass = *value.metaClass().get();
    const ClassNames& names = namesOf(valueClass);
    visitor_.beginElement(names.qualifiedName);
    for (std::size_t index = 0; index != names.properties.size(); ++index) {
      visitor_.property(names.properties[index]);
      showData(value.reflect(index));
    }
    visitor_.endElement();
  }

  void showData(const ValueMeta& value) {
    if (const auto* text = value.get_if<std::u16string_view>()) {
      visitor_.text(*text);
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

  NameTable& names_;
  ElementVisitor& visitor_;
  std::vector<Frame> open_;
};

}  // namespace

void walkElement(NameTable& names, const ModelElement& element, ElementVisitor& visitor) {
  Walk(names, visitor).run(*element.get());
}

}  // namespace reference_host::exporting
