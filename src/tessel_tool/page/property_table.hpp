#pragma once

/// @file
/// The properties of elements of any class, with their types and values.

#include <string>
#include <unordered_map>
#include <vector>

#include "gx/zero.hpp"
#include "page/element_view.hpp"
#include "page/html_text.hpp"
#include "page/html_writer.hpp"

namespace tessel_tool {

/// The names of a class and its properties, for people.
struct NamedClass {
  struct NamedProperty {
    const gx::zero::meta::Property* property;
    std::string name;
    std::string type;
    // As they stand in a table of properties, once they have been there.
    HtmlText rowStart{};
    HtmlText unsetRow{};
  };

  std::string name;                       ///< without its namespace
  std::vector<NamedProperty> properties;  ///< but references
};

/// The classes met so far.
class ClassNames {
 public:
  NamedClass& of(const gx::zero::meta::Class::Impl& described);

 private:
  std::unordered_map<const gx::zero::meta::Class::Impl*, NamedClass> known_;
};

/// The properties of an element and of all that it contains, as a table.
void writeProperties(HtmlWriter& html, ClassNames& classes, ElementView element);

}  // namespace tessel_tool
