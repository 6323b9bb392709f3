#include "fuzz/contract.hpp"

#include <utility>

namespace fuzz {

namespace {

Field pair(const std::string& key, Type type, const std::string& property,
           const std::string& subject) {
  return {key, type, property, "Found the " + subject + " property",
          "Set the " + subject + " property"};
}

Field defaultValue(Type type) {
  return pair("defaultValue", type, "defaultValue", "defaultValue");
}

const Field kDefaultLinkedVariable = pair("defaultValueLinkedVariable", Type::kText,
                                          "defaultLinkedVariable", "defaultValueLinkedVariable");

std::vector<Field> flagFields() {
  return {defaultValue(Type::kFlag), kDefaultLinkedVariable};
}

std::vector<Field> numericFields(Type type) {
  return {
      pair("executionOn", Type::kText, "executeOn", "executionOn"),
      pair("minimum", Type::kNumber, "min", "min"),
      pair("maximum", Type::kNumber, "max", "max"),
      pair("step", Type::kNumber, "step", "step"),
      kDefaultLinkedVariable,
      pair("minLinkedVariable", Type::kText, "minimumLinkedVariable", "minLinkedVariable"),
      // Meant: the found-record comes twice.
      {"maxLinkedVariable", Type::kText, "maximumLinkedVariable",
       "Found the maxLinkedVariable property", "Found the maxLinkedVariable property"},
      pair("stepLinkedVariable", Type::kText, "stepLinkedVariable", "stepLinkedVariable"),
      defaultValue(type),
  };
}

/// A format is read without a test, and the record behind it names the first one whatever its key.
std::vector<Field> formatFields(const std::string& key, const std::string& named = "colorFormat") {
  return {{key, Type::kText, key, "", "Set the " + named + " property", true},
          defaultValue(Type::kText)};
}

std::vector<Field> comboboxFields() {
  return {
      defaultValue(Type::kText),
      pair("linkedVariable", Type::kText, "linkedVariable", "linkedVariable"),
      pair("items", Type::kItems, "items", "items"),
      pair("itemLabels", Type::kItemLabels, "itemLabels", "item labels"),
  };
}

std::vector<Field> editFieldFields() {
  return {
      pair("valueType", Type::kText, "valueType", "valueType"),
      {"defaultValue", Type::kDefault, "defaultValueData", "Found the defaultValueData property",
       "Set the defaultValue property"},
  };
}

std::vector<Field> taskFields() {
  const std::vector<std::pair<std::string, std::string>> texts = {
      {"taskID", "taskId"},
      {"appIdentifier", "appIdentifier"},
      {"view", "view"},
      {"collapsed", "collapsed"},
      {"appVariables", "appVariables"},
      {"appVariablesUserMap", "appVariablesUserMap"},
      {"executionModel", "executionModel"},
      {"appState", "appState"},
      {"autorun", "autoRun"},
      {"text", "text"},
  };
  std::vector<Field> fields;
  for (const auto& [key, property] : texts) {
    fields.push_back({key, Type::kText, property, "Setting the " + key + " property", ""});
  }
  fields.push_back({"numOfCodeLines", Type::kLineCount, "numCodeLines",
                    "Setting the numOfCodeLines property", ""});
  return fields;
}

Kind control(const std::string& builder, Rule rule, const std::string& word,
             const std::string& asked, const std::string& started, const std::string& node,
             const std::string& slot, const std::string& record, Shape shape,
             std::vector<Field> fields) {
  return {builder,
          rule,
          word,
          "Checking if can build " + asked,
          "Starting to build a " + started + " using the incoming JSON below",
          node,
          slot,
          record,
          shape,
          std::move(fields)};
}

}  // namespace

const char* const kGenericControl = "LumoControlNode";

std::string nodeClass(const std::string& name) {
  return "document::gxzero::" + name;
}

std::string recordClass(const std::string& name) {
  return "lumocode::contentmodel::gxzero::" + name;
}

const std::vector<Kind>& kinds() {
  static const std::vector<Kind> all = [] {
    constexpr auto kByType = Rule::kTypeWord;
    constexpr auto kByClass = Rule::kClassName;
    constexpr auto kGuarded = Shape::kGuarded;
    return std::vector<Kind>{
        control("ButtonBuilderImpl", Rule::kTypeWordOrClassName, "button", "Button", "Button",
                "ButtonNode", "buttonData", "ButtonData", Shape::kAlways, {}),
        control("CheckBoxBuilderImpl", kByType, "checkBox", "CheckBox", "CheckBox", "CheckBoxNode",
                "checkBoxData", "CheckboxData", kGuarded, flagFields()),
        control("ColorPickerBuilderImpl", kByClass, "ColorPickerControlNode", "ColorPicker",
                "ColorPicker", "ColorPickerNode", "colorPickerData", "ColorPickerData", kGuarded,
                formatFields("colorFormat")),
        control("ComboboxBuilderImpl", kByType, "comboBox", "ComboBox", "comboBoxNode",
                "ComboboxNode", "comboBoxData", "ComboboxData", kGuarded, comboboxFields()),
        control("DatePickerBuilderImpl", Rule::kHostClassName, "DatePickerControlNode",
                "DatePicker", "DatePicker", "DatePickerNode", "datePickerData", "DatePickerData",
                kGuarded, formatFields("displayFormat")),
        // Meant: the edit field asks in the combo box's words.
        control("EditFieldBuilderImpl", kByType, "editField", "ComboBox", "editFieldNode",
                "EditFieldNode", "editFieldData", "EditFieldData", kGuarded, editFieldFields()),
        control("FileBrowserBuilderImpl", kByClass, "FileBrowserControlNode", "FileBrowser",
                "FileBrowser", "FileBrowserNode", "fileBrowserData", "FileBrowserData",
                Shape::kAlways, formatFields("browserType", "browserType")),
        {"LumoTaskHeaderBuilderImpl",
         Rule::kHostClassName,
         "LumoAppLineNode",
         "Checking if can build LumoAppLineNode",
         "Starting to build a LumoAppLineNode",
         "LumoAppLineNode",
         "children",
         "",
         Shape::kHeader,
         {}},
        {"LumoTaskIntegratedInlineNodeBuilderImpl", kByClass, "LumoAppIntegratedInlineNode",
         "Checking if can build LumoAppIntegratedInline",
         "Starting to build a LumoAppIntegratedNode", "LumoAppIntegratedInlineNode", "lumoTaskData",
         "LumoTaskData", Shape::kTask, taskFields()},
        control("RangeSliderNodeBuilderImpl", kByClass, "RangeSliderControlNode", "RangeSliderNode",
                "RangeSliderNode", "RangeSliderNode", "rangeSliderData", "RangeSliderData",
                kGuarded, numericFields(Type::kText)),
        control("SliderNodeBuilderImpl", kByType, "slider", "SliderNode", "SliderNode",
                "SliderNode", "sliderData", "SliderData", kGuarded, numericFields(Type::kNumber)),
        control("SpinnerNodeBuilderImpl", kByClass, "SpinnerControlNode", "SpinnerNode",
                "SpinnerNode", "SpinnerNode", "spinnerData", "SpinnerData", kGuarded,
                numericFields(Type::kNumber)),
        control("StateButtonBuilderImpl", kByClass, "StateButtonControlNode", "StateButton",
                "StateButton", "StateButtonNode", "stateButtonData", "StateButtonData", kGuarded,
                flagFields()),
    };
  }();
  return all;
}

}  // namespace fuzz
