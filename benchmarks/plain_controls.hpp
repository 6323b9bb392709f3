#pragma once

/// @file
/// The controls as plain structs: what a program would hold that has no document model.
///
/// Read from the JSON object of any library through an adapter, which has
///
///     bool hasClass(std::string_view)                     "className" is the text
///     void read(const char* key, std::optional<T>&)       a member, if it is there
///     Object child(const char* key)                       a member that is an object; may be none
///     template <F> void forEach(const char* key, F)       the elements of a member, as adapters
///     void readSelf(std::optional<T>&)                    an element that is no object

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "contract/kinds.hpp"

namespace benchmarks {

/// @tparam Text `std::string` for UTF-8, `std::u16string` for UTF-16.
template <typename Text>
struct CommonFields {
  std::optional<Text> id;
  std::optional<double> startColumn;
  std::optional<double> endColumn;
  std::optional<Text> executionModel;
  std::optional<Text> label;
  std::optional<Text> code;
};

template <typename Text>
struct BooleanFields : CommonFields<Text> {
  std::optional<bool> defaultValue;
  std::optional<Text> defaultLinkedVariable;
};

template <typename Text>
struct NumericFields : CommonFields<Text> {
  std::optional<Text> executeOn;
  std::optional<double> minimum;
  std::optional<double> maximum;
  std::optional<double> step;
  std::optional<Text> defaultLinkedVariable;
  std::optional<Text> minimumLinkedVariable;
  std::optional<Text> maximumLinkedVariable;
  std::optional<Text> stepLinkedVariable;
};

template <typename Text>
struct ScalarFields : NumericFields<Text> {
  std::optional<double> defaultValue;
};

template <typename Text>
struct PickerFields : CommonFields<Text> {
  std::optional<Text> format;
  std::optional<Text> defaultValue;
};

template <typename Text>
struct Button : CommonFields<Text> {
  static constexpr const char* kBuilder = "ButtonBuilderImpl";
};
template <typename Text>
struct CheckBox : BooleanFields<Text> {
  static constexpr const char* kBuilder = "CheckBoxBuilderImpl";
};
template <typename Text>
struct StateButton : BooleanFields<Text> {
  static constexpr const char* kBuilder = "StateButtonBuilderImpl";
};
template <typename Text>
struct Slider : ScalarFields<Text> {
  static constexpr const char* kBuilder = "SliderNodeBuilderImpl";
};
template <typename Text>
struct Spinner : ScalarFields<Text> {
  static constexpr const char* kBuilder = "SpinnerNodeBuilderImpl";
};
template <typename Text>
struct RangeSlider : NumericFields<Text> {
  static constexpr const char* kBuilder = "RangeSliderNodeBuilderImpl";
  std::optional<Text> defaultValue;
};
template <typename Text>
struct ColorPicker : PickerFields<Text> {
  static constexpr const char* kBuilder = "ColorPickerBuilderImpl";
};
template <typename Text>
struct DatePicker : PickerFields<Text> {
  static constexpr const char* kBuilder = "DatePickerBuilderImpl";
};
template <typename Text>
struct FileBrowser : PickerFields<Text> {
  static constexpr const char* kBuilder = "FileBrowserBuilderImpl";
};

template <typename Text>
struct Combobox : CommonFields<Text> {
  static constexpr const char* kBuilder = "ComboboxBuilderImpl";
  struct Item {
    std::optional<Text> label;
    std::optional<Text> value;
  };
  std::optional<Text> defaultValue;
  std::optional<Text> linkedVariable;
  std::vector<Item> items;
  std::vector<std::optional<Text>> itemLabels;
};

template <typename Text>
struct EditField : CommonFields<Text> {
  static constexpr const char* kBuilder = "EditFieldBuilderImpl";
  std::optional<Text> valueType;
  std::optional<double> number;
  std::optional<Text> text;
  std::optional<Text> defaultLinkedVariable;
};

template <typename Text>
struct Task {
  static constexpr const char* kBuilder = "LumoTaskIntegratedInlineNodeBuilderImpl";
  std::optional<Text> instanceId;
  std::optional<Text> taskId;
  std::optional<Text> appIdentifier;
  std::optional<Text> view;
  std::optional<Text> collapsed;
  std::optional<Text> appVariables;
  std::optional<Text> appVariablesUserMap;
  std::optional<Text> executionModel;
  std::optional<Text> appState;
  std::optional<Text> autoRun;
  std::optional<Text> text;
  std::optional<double> codeLines;
};

template <typename Text>
struct TaskHeader {
  static constexpr const char* kBuilder = "LumoTaskHeaderBuilderImpl";
  std::optional<Text> anchorId;
  std::vector<Task<Text>> tasks;
};

/// One a kind of the contract, by the builder that it names.
template <typename Text>
using PlainControl =
    std::variant<Button<Text>, CheckBox<Text>, ColorPicker<Text>, Combobox<Text>, DatePicker<Text>,
                 EditField<Text>, FileBrowser<Text>, RangeSlider<Text>, Slider<Text>, Spinner<Text>,
                 StateButton<Text>, TaskHeader<Text>, Task<Text>>;

template <typename Object, typename Text>
void readCommon(const Object& object, const Object& data, CommonFields<Text>& control) {
  object.read("controlId", control.id);
  object.read("startColumn", control.startColumn);
  object.read("endColumn", control.endColumn);
  object.read("text", control.code);
  data.read("executionModel", control.executionModel);
  data.read("text", control.label);
}

template <typename Object, typename Text>
void readOwn(const Object&, Button<Text>&) {}

template <typename Object, typename Text>
void readOwn(const Object& data, BooleanFields<Text>& control) {
  data.read("defaultValue", control.defaultValue);
  data.read("defaultValueLinkedVariable", control.defaultLinkedVariable);
}

template <typename Object, typename Text>
void readNumeric(const Object& data, NumericFields<Text>& control) {
  data.read("executionOn", control.executeOn);
  data.read("minimum", control.minimum);
  data.read("maximum", control.maximum);
  data.read("step", control.step);
  data.read("defaultValueLinkedVariable", control.defaultLinkedVariable);
  data.read("minLinkedVariable", control.minimumLinkedVariable);
  data.read("maxLinkedVariable", control.maximumLinkedVariable);
  data.read("stepLinkedVariable", control.stepLinkedVariable);
}

template <typename Object, typename Text>
void readOwn(const Object& data, ScalarFields<Text>& control) {
  readNumeric(data, control);
  data.read("defaultValue", control.defaultValue);
}

template <typename Object, typename Text>
void readOwn(const Object& data, RangeSlider<Text>& control) {
  readNumeric(data, control);
  data.read("defaultValue", control.defaultValue);
}

template <typename Object, typename Text>
void readPicker(const Object& data, const char* formatKey, PickerFields<Text>& control) {
  data.read(formatKey, control.format);
  data.read("defaultValue", control.defaultValue);
}

template <typename Object, typename Text>
void readOwn(const Object& data, ColorPicker<Text>& control) {
  readPicker(data, "colorFormat", control);
}
template <typename Object, typename Text>
void readOwn(const Object& data, DatePicker<Text>& control) {
  readPicker(data, "displayFormat", control);
}
template <typename Object, typename Text>
void readOwn(const Object& data, FileBrowser<Text>& control) {
  readPicker(data, "browserType", control);
}

template <typename Object, typename Text>
void readOwn(const Object& data, Combobox<Text>& control) {
  data.read("defaultValue", control.defaultValue);
  data.read("linkedVariable", control.linkedVariable);
  data.forEach("items", [&control](const Object& entry) {
    auto& item = control.items.emplace_back();
    entry.read("label", item.label);
    entry.read("value", item.value);
  });
  data.forEach("itemLabels", [&control](const Object& entry) {
    entry.readSelf(control.itemLabels.emplace_back());
  });
}

template <typename Object, typename Text>
void readOwn(const Object& data, EditField<Text>& control) {
  data.read("valueType", control.valueType);
  data.read("defaultValue", control.number);
  data.read("defaultValue", control.text);
  data.read("defaultValueLinkedVariable", control.defaultLinkedVariable);
}

/// Reads a control of any kind that has fields under "context"."data".
template <typename Object, typename Control>
void readControl(const Object& object, Control& control) {
  const Object data = object.child("context").child("data");
  readCommon(object, data, control);
  readOwn(data, control);
}

template <typename Object, typename Text>
void readControl(const Object& object, Task<Text>& task) {
  object.read("instanceId", task.instanceId);
  object.read("taskID", task.taskId);
  object.read("appIdentifier", task.appIdentifier);
  object.read("view", task.view);
  object.read("collapsed", task.collapsed);
  object.read("appVariables", task.appVariables);
  object.read("appVariablesUserMap", task.appVariablesUserMap);
  object.read("executionModel", task.executionModel);
  object.read("appState", task.appState);
  object.read("autorun", task.autoRun);
  object.read("text", task.text);
  object.read("numOfCodeLines", task.codeLines);
}

template <typename Object, typename Text>
void readControl(const Object& object, TaskHeader<Text>& header) {
  object.read("anchorId", header.anchorId);
  object.forEach("children", [&header](const Object& child) {
    if (child.hasClass(contract::taskKind().word)) {
      readControl(child, header.tasks.emplace_back());
    }
  });
}

}  // namespace benchmarks
