#pragma once

/// @file
/// The builders of the controls in a line of code. They hold no state.

#include "document/gxzero.hpp"
#include "foundation/json.hpp"
#include "gx/zero.hpp"
#include "lumocode/contentmodel/gxzero.hpp"
#include "tessel/build/json/builders.hpp"

namespace tessel::build::json::controls {

using document::gxzero::Node;
using foundation::json::Value;
using gx::zero::Model;

class ButtonBuilderImpl final : public code::CodeElementBuilder {
 public:
  bool canBuild(const Value& json) const override;
  Node build(const Model& model, const Value& json) const override;
};

class CheckBoxBuilderImpl final : public code::CodeElementBuilder {
 public:
  bool canBuild(const Value& json) const override;
  Node build(const Model& model, const Value& json) const override;
};

class ColorPickerBuilderImpl final : public code::CodeElementBuilder {
 public:
  bool canBuild(const Value& json) const override;
  Node build(const Model& model, const Value& json) const override;

 private:
  static void applyPickerData(lumocode::contentmodel::gxzero::ColorPickerData data,
                              const Value& json);
};

class ComboboxBuilderImpl final : public code::CodeElementBuilder {
 public:
  bool canBuild(const Value& json) const override;
  Node build(const Model& model, const Value& json) const override;

 private:
  static void applyComboboxData(const Model& model,
                                lumocode::contentmodel::gxzero::ComboboxData data,
                                const Value& json);
};

class DatePickerBuilderImpl final : public code::CodeElementBuilder {
 public:
  bool canBuild(const Value& json) const override;
  Node build(const Model& model, const Value& json) const override;

 private:
  static void applyPickerData(lumocode::contentmodel::gxzero::DatePickerData data,
                              const Value& json);
};

class EditFieldBuilderImpl final : public code::CodeElementBuilder {
 public:
  bool canBuild(const Value& json) const override;
  Node build(const Model& model, const Value& json) const override;

 private:
  static void applyEditFieldData(const Model& model,
                                 lumocode::contentmodel::gxzero::EditFieldData data,
                                 const Value& json);
};

class FileBrowserBuilderImpl final : public code::CodeElementBuilder {
 public:
  bool canBuild(const Value& json) const override;
  Node build(const Model& model, const Value& json) const override;
};

class RangeSliderNodeBuilderImpl final : public code::CodeElementBuilder {
 public:
  bool canBuild(const Value& json) const override;
  Node build(const Model& model, const Value& json) const override;
};

class SliderNodeBuilderImpl final : public code::CodeElementBuilder {
 public:
  bool canBuild(const Value& json) const override;
  Node build(const Model& model, const Value& json) const override;
};

class SpinnerNodeBuilderImpl final : public code::CodeElementBuilder {
 public:
  bool canBuild(const Value& json) const override;
  Node build(const Model& model, const Value& json) const override;
};

class StateButtonBuilderImpl final : public code::CodeElementBuilder {
 public:
  bool canBuild(const Value& json) const override;
  Node build(const Model& model, const Value& json) const override;
};

}  // namespace tessel::build::json::controls
