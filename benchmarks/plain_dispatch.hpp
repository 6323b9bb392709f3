#pragma once

/// @file
/// From an object's class name and type word to the plain struct of its kind, by one look in a
/// table.
///
/// Objects of any library come through the adapters of plain_controls.hpp, which for this also have
///
///     std::string_view textOf(const char* key)            a member; empty if it is no text
///     template <C> void readInto(C& control)              the object as a control of that kind
///     template <F> void forEachChild(F)                   all members or elements, as adapters

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "document_generator.hpp"
#include "plain_controls.hpp"

namespace benchmarks {

/// The kind that an object's words stand for; none for an object that is no control.
template <typename Object>
std::optional<Kind> kindOf(const Object& object) {
  static const std::unordered_map<std::string_view, Kind> kByClassName = {
      {"ColorPickerControlNode", Kind::kColorPicker},
      {"DatePickerControlNode", Kind::kDatePicker},
      {"FileBrowserControlNode", Kind::kFileBrowser},
      {"RangeSliderControlNode", Kind::kRangeSlider},
      {"SpinnerControlNode", Kind::kSpinner},
      {"StateButtonControlNode", Kind::kStateButton},
      {"LumoAppLineNode", Kind::kTaskHeader},
      {"LumoAppIntegratedInlineNode", Kind::kTask}};
  static const std::unordered_map<std::string_view, Kind> kByTypeWord = {
      {"button", Kind::kButton},
      {"checkBox", Kind::kCheckBox},
      {"comboBox", Kind::kCombobox},
      {"editField", Kind::kEditField},
      {"slider", Kind::kSlider}};
  const std::string_view className = object.textOf("className");
  if (className.empty()) return std::nullopt;
  const bool generic = className == "LumoControlNode";
  const auto& words = generic ? kByTypeWord : kByClassName;
  const auto found = words.find(generic ? object.child("context").textOf("type") : className);
  return found == words.end() ? std::nullopt : std::optional<Kind>(found->second);
}

template <typename Text, typename Object, std::size_t... Index>
PlainControl<Text> readAs(Kind kind, const Object& object, std::index_sequence<Index...>) {
  PlainControl<Text> control;
  ((static_cast<std::size_t>(kind) == Index ? object.readInto(control.template emplace<Index>())
                                            : void()),
   ...);
  return control;
}

/// The object as a control of the kind.
template <typename Text, typename Object>
PlainControl<Text> readAs(Kind kind, const Object& object) {
  return readAs<Text>(kind, object, std::make_index_sequence<kKindCount>());
}

/// Appends the controls in a document, in its order; there are none inside of another.
template <typename Text, typename Object>
void collectControls(const Object& object, std::vector<PlainControl<Text>>& controls) {
  if (const auto kind = kindOf(object)) {
    controls.push_back(readAs<Text>(*kind, object));
    return;
  }
  object.forEachChild([&controls](const Object& child) { collectControls(child, controls); });
}

}  // namespace benchmarks
