#pragma once

/// @file
/// One walk over an element and everything it contains, for every form of output.

#include <cstdint>
#include <string_view>

#include "gx/zero.hpp"
#include "reference_host/export/export.hpp"

namespace reference_host::exporting {

/// What a walk finds, call by call. All texts last until the call returns.
class ElementVisitor {
 public:
  /// An element begins; every property up to the matching `endElement` is its own.
  /// @param className the qualified name as a JSON text.
  virtual void beginElement(std::string_view className) = 0;
  virtual void endElement() = 0;
  /// The name, as a JSON text, of the property whose value comes next.
  virtual void property(std::string_view name) = 0;
  /// A sequence of elements begins; it is not empty.
  virtual void beginSequence() = 0;
  virtual void endSequence() = 0;
  virtual void text(std::u16string_view text) = 0;
  virtual void number(double number) = 0;
  virtual void boolean(bool boolean) = 0;
  virtual void integer(std::uint64_t integer) = 0;

 protected:
  ElementVisitor() = default;
  ElementVisitor(const ElementVisitor&) = default;
  ElementVisitor& operator=(const ElementVisitor&) = default;
  ~ElementVisitor() = default;
};

/// Shows an element to a visitor: its class, then the properties that were set, in the class's
/// order, with contained elements in place. Works at any nesting depth.
/// @param names those of the classes met so far.
/// @pre the element is not empty.
void walkElement(NameTable& names, const gx::zero::ModelElement& element, ElementVisitor& visitor);

}  // namespace reference_host::exporting
