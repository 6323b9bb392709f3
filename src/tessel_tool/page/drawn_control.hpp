#pragma once

/// @file
/// Controls as the form controls of a page, and task nodes as blocks.

#include <string>
#include <string_view>
#include <vector>

#include "gx/zero.hpp"
#include "page/code_line.hpp"
#include "page/element_view.hpp"
#include "page/html_writer.hpp"

namespace tessel_tool {

/// What a page calls a control.
struct ControlKind {
  std::string word;     ///< one word, such as "check-box"
  std::string name;     ///< "check box"
  bool isTask = false;  ///< a block of its own, in no line of code
};

/// A node as a page sees it, by reflection alone. The node outlives the view.
class ControlView {
 public:
  explicit ControlView(const gx::zero::ModelElement::Impl& node);

  ControlKind kind() const;
  std::u16string_view id() const;
  /// The line of code that holds the control; empty where none was set.
  std::u16string_view code() const;
  bool hasCode() const;
  Columns columns() const;
  /// "slider" and, where there is one, the id.
  std::string title() const;

  /// Writes the form control with its label and, behind it, a value that HTML would refuse or
  /// change. A control of a class that nobody knows is a plain box.
  /// @param notes what else is to be said of it.
  void draw(HtmlWriter& html, std::vector<std::string>& notes) const;
  /// Writes what stands in the block of a task, or of the header of tasks.
  void drawTask(HtmlWriter& html) const;

 private:
  ElementView node_;
  std::optional<ElementView> data_;
  const struct DrawnKind* drawn_ = nullptr;
};

/// The properties of an element and of all that it contains, as a table.
void writeProperties(HtmlWriter& html, ClassNames& classes, ElementView element);

}  // namespace tessel_tool
