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
  Walk(ShownClasses& classes, ElementVisitor& visitor, const PartEnds& partEnds)
      : classes_(classes), visitor_(visitor), partEnds_(partEnds) {}

  void run(const ModelElement::Impl& element) {
    enter(element);
    while (!open_.empty()) {
      Frame& frame = open_.back();
      if (frame.next != frame.end) {
        const std::size_t index = frame.next++;
        if (frame.sequence != nullptr) {
          enter(*(*frame.sequence)[index]);
        } else {
          show(*frame.element, frame.shown->properties[index]);
        }
        continue;
      }
      if (frame.sequence != nullptr) {
        visitor_.endSequence();
      } else {
        visitor_.endElement();
        if (partEnds_) partEnds_();
      }
      open_.pop_back();
    }
  }

 private:
  using Sequence = std::vector<ModelElement::Impl*>;

  /// What is open: an element with its properties, or a sequence with its elements.
  struct Frame {
    const ModelElement::Impl* element;
    const ShownClass* shown;
    const Sequence* sequence;
    std::size_t end;
    std::size_t next = 0;
  };

  const ShownClass& shownClass(const Class::Impl& described) {
    const auto known = classes_.find(&described);
    if (known != classes_.end()) return known->second;
    ShownClass shown{quoted(described.getQualifiedName()), {}};
    for (const Property& property : described.getProperties()) {
      if (property.getKind() == Property::Kind::kReference) continue;
      shown.properties.push_back({&property, quoted(property.getName())});
    }
    return classes_.emplace(&described, std::move(shown)).first->second;
  }

  void enter(const ModelElement::Impl& element) {
    const ShownClass& elementClass = shownClass(*element.metaClass().get());
    visitor_.beginElement(elementClass.qualifiedName);
    open_.push_back({&element, &elementClass, nullptr, elementClass.properties.size()});
  }

  void show(const ModelElement::Impl& element, const ShownClass::ShownProperty& shown) {
    const Property& property = *shown.property;
    const bool holdsElements = property.getKind() == Property::Kind::kContained ||
                               property.getKind() == Property::Kind::kSequence;
    if (!holdsElements && !element.isSet(property)) return;
    const ValueMeta value = property_value(element, property);
    if (const auto* contained = value.get_if<ModelElement>()) {
      if (!*contained) return;
      visitor_.property(shown.name);
      enter(*contained->get());
    } else if (const auto* collection = value.get_if<const ReferenceCollection*>()) {
      const Sequence* elements = &elements_of(**collection);
      if (elements->empty()) return;
      visitor_.property(shown.name);
      visitor_.beginSequence();
      open_.push_back({nullptr, nullptr, elements, elements->size()});
    } else {
      visitor_.property(shown.name);
      if (const auto* held = value.get_if<const ValueStruct*>()) {
        showStruct(**held);
      } else {
        showData(value);
      }
    }
  }

  /// All fields, set or not: a value has no more than them.
  void showStruct(const ValueStruct& value) {
    const ShownClass& valueClass = shownClass(*value.metaClass().get());
    visitor_.beginElement(valueClass.qualifiedName);
    for (const auto& [property, name] : valueClass.properties) {
      visitor_.property(name);
      showData(value.reflect(property->getIndex()));
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

  ShownClasses& classes_;
  ElementVisitor& visitor_;
  const PartEnds& partEnds_;
  std::vector<Frame> open_;
};

}  // namespace

void walkElement(ShownClasses& classes, const ModelElement& element, ElementVisitor& visitor,
                 const PartEnds& partEnds) {
  Walk(classes, visitor, partEnds).run(*element.get());
}

}  // namespace reference_host::exporting
