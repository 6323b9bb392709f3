#pragma once

/// @file
/// Controls as the form controls of a page, and task nodes as blocks.

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "gx/zero.hpp"
#include "page/code_line.hpp"
#include "page/element_view.hpp"
#include "page/html_writer.hpp"

namespace tessel_tool {

/// The kinds of the classes met so far: what a node is drawn as, or where its data is.
class ControlKinds {
 public:
  struct Known {
    const struct DrawnKind* drawn;  ///< none where the class does not tell it
    std::vector<const gx::zero::meta::Property*> dataHolders;
  };

  const Known& of(const gx::zero::meta::Class::Impl& described);

 private:
  std::unordered_map<const gx::zero::meta::Class::Impl*, Known> known_;
};

/// A node as a page sees it, by reflection alone. The node outlives the view.
class ControlView {
 public:
  ControlView(const gx::zero::ModelElement::Impl& node, ControlKinds& kinds);

  const char* word() const;  ///< one word for its kind, such as "check-box"
  std::string name() const;  ///< "check box"
  bool isTask() const;       ///< a block of its own, in no line of code
  std::u16string_view id() const;
  /// The tasks of a header.
  const std::vector<gx::zero::ModelElement::Impl*>& children() const {
    return node_.elements(u"children");
  }
  /// The line of code that holds the control; empty where none was set.
  std::u16string_view code() const { return code_; }
  Columns columns() const;
  /// The id; the label where there is none.
  std::string ownName() const;
  /// "slider" and, where there is one, the control's own name.
  std::string title() const;

  /// Writes the form control with its label and, behind it, a value that HTML would refuse or
  /// change. A control of a class that nobody knows is a plain box.
  /// @param valueId the id of that value on the page.
  /// @param notes what else is to be said of it.
  void draw(HtmlWriter& html, std::string_view valueId, std::vector<std::string>& notes) const;
  /// Writes what stands in the block of a task, or of the header of tasks.
  void drawTask(HtmlWriter& html, ControlKinds& kinds) const;

 private:
  std::string label() const;

  ElementView node_;
  std::optional<ElementView> data_;
  std::u16string_view code_;
  const DrawnKind* drawn_ = nullptr;
};

}  // namespace tessel_tool
