#include "page/property_table.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

#include "reference_host/fl/utf16.hpp"
#include "text_form.hpp"

namespace tessel_tool {

using gx::zero::ModelElement;
using gx::zero::ReferenceCollection;
using gx::zero::ValueMeta;
using gx::zero::ValueStruct;
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

/// An element whose properties are being written, and which comes next.
struct OpenElement {
  ElementView element;
  NamedClass* named;
  std::size_t next = 0;
  const std::vector<ModelElement::Impl*>* sequence = nullptr;  // that is being written
  std::size_t nextInSequence = 0;
};

class PropertyTable {
 public:
  PropertyTable(HtmlWriter& html, ClassNames& classes) : html_(html), classes_(classes) {}

  void write(ElementView element) {
    html_.begin("table").attribute("class", "properties");
    html_.begin("thead").begin("tr");
    for (const char* title : {"property", "type", "value"}) html_.begin("th").text(title);
    enter(element);
    while (!open_.empty()) {
      OpenElement& current = open_.back();
      if (current.sequence != nullptr) {
        writeNextElement(current);
      } else if (current.next != current.named->properties.size()) {
        writeNextProperty(current);
      } else {
        open_.pop_back();
        isAtLevel_ = false;
      }
    }
    html_.end("table");
  }

 private:
  void enter(const ElementView& element) {
    open_.push_back({element, &classes_.of(element.metaClass())});
    isAtLevel_ = false;
  }

  void beginRows() {
    if (std::exchange(isAtLevel_, true)) return;
    constexpr const char* kLevels[] = {"level1", "level2", "level3"};
    html_.begin("tbody");
    if (open_.size() > 1) html_.attribute("class", kLevels[std::min(open_.size() - 2, kDeepest)]);
  }

  static void writeRow(HtmlWriter& html, std::string_view name, std::string_view type) {
    html.begin("tr").begin("th").text(name).begin("td").text(type).begin("td");
  }

  void beginRow(std::string_view name, std::string_view type) {
    beginRows();
    writeRow(html_, name, type);
  }

  void writeNextElement(OpenElement& current) {
    const auto& property = current.named->properties[current.next - 1];
    const std::size_t index = current.nextInSequence++;
    if (index == current.sequence->size()) {
      current.sequence = nullptr;
      return;
    }
    const ElementView element(*(*current.sequence)[index]);
    beginRow(property.name + '[' + std::to_string(index) + ']',
             classes_.of(element.metaClass()).name);
    enter(element);
  }

  void writeNextProperty(OpenElement& current) {
    auto& [property, name, type, rowStart, unsetRow] = current.named->properties[current.next++];
    const std::optional<ValueMeta> set = current.element.readIfSet(*property);
    if (!set) {
      beginRows();
      if (unsetRow.size() == 0) {
        HtmlWriter row(unsetRow);
        writeRow(row, name, type);
        row.attribute("class", "unset").text("not set");
      }
      html_.written(unsetRow.view());
      return;
    }
    const ValueMeta& value = *set;
    if (const auto* contained = value.get_if<ModelElement>()) {
      const ElementView element(*contained->get());
      beginRow(name, classes_.of(element.metaClass()).name);
      enter(element);
    } else if (const auto* held = value.get_if<const ValueStruct*>()) {
      beginRow(name, type);
      enter(ElementView(**held));
    } else if (const auto* sequence = value.get_if<const ReferenceCollection*>()) {
      current.sequence = &elements_of(**sequence);
      current.nextInSequence = 0;
      beginRow(name, type);
      html_.number(std::uint64_t{current.sequence->size()});
    } else {
      beginRows();
      if (rowStart.size() == 0) {
        HtmlWriter row(rowStart);
        writeRow(row, name, type);
        row.text("");
      }
      html_.written(rowStart.view());
      writeData(value);
    }
  }

  void writeData(const ValueMeta& value) {
    if (const auto* text = value.get_if<std::u16string_view>()) {
      html_.begin("bdi").quoted(*text).end("bdi");
    } else if (const auto* number = value.get_if<double>()) {
      html_.number(*number);
    } else if (const auto* boolean = value.get_if<bool>()) {
      html_.text(*boolean ? "true" : "false");
    } else if (const auto* integer = value.get_if<std::uint64_t>()) {
      html_.number(*integer);
    }
  }

  static constexpr std::size_t kDeepest = 2;  // level that is indented further

  HtmlWriter& html_;
  ClassNames& classes_;
  std::vector<OpenElement> open_;
  bool isAtLevel_ = false;  // whether rows go on where the last one was
};

}  // namespace

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

void writeProperties(HtmlWriter& html, ClassNames& classes, ElementView element) {
  PropertyTable(html, classes).write(element);
}

}  // namespace tessel_tool
