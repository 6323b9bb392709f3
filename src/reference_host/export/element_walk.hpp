#pragma once

/// @file
/// One walk over an element and everything it contains, for every form of output.

#include <cstdint>
#include <string_view>

#include "gx/zero.hpp"
#include "reference_host/export/export.hpp"

namespace reference_host::exporting {

/// What a walk finds, call by call. Names are JSON texts; all texts last until the
/// call returns.
class ElementVisitor {
 public:
  /// An element begins; every property up to the matching `endElement` is its own.
  virtual void beginElement(std::string_view qualifiedClassName) = 0;
  virtual void endElement() = 0;
  /// The name of the property whose value comes next.
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
/// @param classes those met so far.
/// @param partEnds called behind each element.
/// @pre the element is not empty.
void walkElement(ShownClasses& classes, const gx::zero::ModelElement& element,
                 ElementVisitor& visitor, const PartEnds& partEnds);

}  // namespace reference_host::exporting
