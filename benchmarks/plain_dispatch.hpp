#pragma once

/// @file
/// From an object's class name and type word to the kind of control, by one look in a table.

#include <optional>
#include <string_view>
#include <unordered_map>

#include "document_generator.hpp"

namespace benchmarks {

/// The kind that an object's words stand for; none for an object that is no control.
/// @param typeWord asked for only when the class name is the generic one.
template <typename TypeWord>
std::optional<Kind> kindOf(std::string_view className, const TypeWord& typeWord) {
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
  const bool generic = className == "LumoControlNode";
  const auto& words = generic ? kByTypeWord : kByClassName;
  const auto found = words.find(generic ? std::string_view(typeWord()) : className);
  return found == words.end() ? std::nullopt : std::optional<Kind>(found->second);
}

}  // namespace benchmarks
