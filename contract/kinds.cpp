#include "contract/kinds.hpp"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace contract {

namespace {

using Fields = std::vector<Field>;
using Values = std::vector<std::string>;

/// A key of "data" with a log record before it is read and one after it is set.
Field pair(const std::string& key, Type type, const std::string& property,
           const std::string& subject, Usage usage = {}) {
  Field field{key, type, property, "Found the " + subject + " property",
              "Set the " + subject + " property"};
  field.usage = std::move(usage);
  return field;
}

/// The same for a key whose name is that of the property and stands in the records, too.
Field pair(const std::string& key, Type type, Usage usage = {}) {
  return pair(key, type, key, key, std::move(usage));
}

Field silent(const std::string& key, Type type, const std::string& property, Field::Holder holder) {
  Field field{key, type, property, "", ""};
  field.place = Field::Place::kObject;
  field.holder = holder;
  return field;
}

Field defaultValue(Type type, Usage usage = {80}) {
  return pair("defaultValue", type, std::move(usage));
}

const Field kDefaultLinkedVariable =
    pair("defaultValueLinkedVariable", Type::kText, "defaultLinkedVariable",
         "defaultValueLinkedVariable", {40});

/// What every control carries, in front of a kind's own fields.
Fields withCommon(Fields own) {
  Field code = pair("text", Type::kText, "code", "code", {80, {}, 6});
  code.place = Field::Place::kObject;
  Fields fields = {
      silent("startColumn", Type::kColumn, "startColumn", Field::Holder::kPosition),
      silent("endColumn", Type::kColumn, "endColumn", Field::Holder::kPosition),
      silent("controlId", Type::kTextOrNothing, "id", Field::Holder::kNode),
      pair("executionModel", Type::kText,
           {70, {R"("section")", R"("document")", R"("none")", R"("toEnd")"}}),
      // The one key means two things: the label in "data", the line's code on the object.
      pair("text", Type::kText, "label", "label", {100, {}, 3}),
      code,
  };
  fields.insert(fields.end(), own.begin(), own.end());
  return fields;
}

Fields flagFields() {
  return {defaultValue(Type::kFlag), kDefaultLinkedVariable};
}

Fields numericFields(const Field& defaultValue) {
  Field maximumLinkedVariable =
      pair("maxLinkedVariable", Type::kText, "maximumLinkedVariable", "maxLinkedVariable", {20});
  // Irregular by contract: the found-record comes twice.
  maximumLinkedVariable.set = maximumLinkedVariable.found;
  return {
      pair("executionOn", Type::kText, "executeOn", "executionOn",
           {50, {R"("release")", R"("change")"}}),
      pair("minimum", Type::kNumber, "min", "min", {90}),
      pair("maximum", Type::kNumber, "max", "max", {90}),
      pair("step", Type::kNumber, {90}),
      kDefaultLinkedVariable,
      pair("minLinkedVariable", Type::kText, "minimumLinkedVariable", "minLinkedVariable", {20}),
      maximumLinkedVariable,
      pair("stepLinkedVariable", Type::kText, {20}),
      defaultValue,
  };
}

/// A format that is read without a test, and the default value.
Fields formatFields(const std::string& key, const std::string& set, const Values& formats,
                    Usage defaults) {
  Field format{key, Type::kText, key, "", set};
  format.required = true;
  format.usage.values = formats;
  return {format, defaultValue(Type::kText, std::move(defaults))};
}

/// Irregular by contract: whatever the key of the format, the record names the first one.
const std::string kSetFormat = "Set the colorFormat property";

Fields comboboxFields() {
  return {
      defaultValue(Type::kText),
      pair("linkedVariable", Type::kText, {40}),
      pair("items", Type::kItems),
      pair("itemLabels", Type::kItemLabels, "itemLabels", "item labels", {50}),
  };
}

Fields editFieldFields() {
  Field value{"defaultValue", Type::kDefault, "defaultValueData",
              // Irregular by contract: named after the element here, after the key there.
              "Found the defaultValueData property", "Set the defaultValue property"};
  value.usage.words = 2;
  return {
      pair("valueType", Type::kValueType, {100, {R"("String")", R"("Date")"}}),
      value,
      {"defaultValueLinkedVariable", Type::kDefaultLinked, "", "", ""},
  };
}

Fields taskFields() {
  const auto field = [](const std::string& key, Type type, const std::string& property,
                        Usage usage) {
    Field result = silent(key, type, property, Field::Holder::kRecord);
    result.found = "Setting the " + key + " property";
    result.usage = std::move(usage);
    return result;
  };
  Field id = field("instanceId", Type::kText, "id", {});
  id.holder = Field::Holder::kNode;
  return {
      id,
      field("taskID", Type::kText, "taskId", {}),
      field("appIdentifier", Type::kText, "appIdentifier",
            {100, {R"("cleaner")", R"("resampler")", R"("plotter")"}}),
      field("view", Type::kText, "view", {60, {R"("controls")", R"("code")", R"("both")"}}),
      field("collapsed", Type::kText, "collapsed", {60, {R"("true")", R"("false")"}}),
      field("appVariables", Type::kText, "appVariables", {50, {R"("{\"method\":\"median\"}")"}}),
      field("appVariablesUserMap", Type::kText, "appVariablesUserMap",
            {20, {R"("{\"raw\":\"table\"}")"}}),
      field("executionModel", Type::kText, "executionModel",
            {50, {R"("section")", R"("document")"}}),
      field("appState", Type::kText, "appState", {30, {R"("{\"page\":1}")"}}),
      field("autorun", Type::kText, "autoRun", {60, {R"("true")", R"("false")"}}),
      field("text", Type::kText, "text", {100, {}, 6}),
      field("numOfCodeLines", Type::kLineCount, "numCodeLines", {}),
  };
}

Fields headerFields() {
  Field children = silent("children", Type::kChildren, "children", Field::Holder::kNode);
  children.required = true;
  return {silent("anchorId", Type::kAnchor, "anchorId", Field::Holder::kNode), children};
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
  // The texts stand whole: people search for them.
  static const std::vector<Kind> all = {
      {"button", "ButtonBuilderImpl",                               //
       Rule::kTypeWordOrClassName, "button",                        //
       "Checking if can build Button",                              //
       "Starting to build a Button using the incoming JSON below",  //
       "ButtonNode", "buttonData", "ButtonData",                    //
       Shape::kUnguarded, withCommon({})},
      {"check box", "CheckBoxBuilderImpl",                            //
       Rule::kTypeWord, "checkBox",                                   //
       "Checking if can build CheckBox",                              //
       "Starting to build a CheckBox using the incoming JSON below",  //
       "CheckBoxNode", "checkBoxData", "CheckboxData",                //
       Shape::kGuarded, withCommon(flagFields())},
      {"colour picker", "ColorPickerBuilderImpl",                        //
       Rule::kClassName, "ColorPickerControlNode",                       //
       "Checking if can build ColorPicker",                              //
       "Starting to build a ColorPicker using the incoming JSON below",  //
       "ColorPickerNode", "colorPickerData", "ColorPickerData",          //
       Shape::kGuarded,
       withCommon(formatFields("colorFormat", kSetFormat, {R"("hex")", R"("rgb")", R"("name")"},
                               {80, {R"("#0072b2")", R"("[0.25 0.5 1]")", R"("red")"}}))},
      {"combo box", "ComboboxBuilderImpl",                                //
       Rule::kTypeWord, "comboBox",                                       //
       "Checking if can build ComboBox",                                  //
       "Starting to build a comboBoxNode using the incoming JSON below",  //
       "ComboboxNode", "comboBoxData", "ComboboxData",                    //
       Shape::kGuarded, withCommon(comboboxFields())},
      {"date picker", "DatePickerBuilderImpl",                          //
       Rule::kHostClassName, "DatePickerControlNode",                   //
       "Checking if can build DatePicker",                              //
       "Starting to build a DatePicker using the incoming JSON below",  //
       "DatePickerNode", "datePickerData", "DatePickerData",            //
       Shape::kGuarded,
       withCommon(formatFields("displayFormat", kSetFormat,
                               {R"("yyyy-MM-dd")", R"("dd.MM.yyyy HH:mm")", R"("MM/dd")"},
                               {80, {R"("2026-03-01")", R"("01.03.2026 12:00")", R"("03/01")"}}))},
      {"edit field", "EditFieldBuilderImpl",  //
       Rule::kTypeWord, "editField",          //
       "Checking if can build ComboBox",      // irregular by contract: the combo box's words
       "Starting to build a editFieldNode using the incoming JSON below",  //
       "EditFieldNode", "editFieldData", "EditFieldData",                  //
       Shape::kGuarded, withCommon(editFieldFields())},
      {"file browser", "FileBrowserBuilderImpl",                         //
       Rule::kClassName, "FileBrowserControlNode",                       //
       "Checking if can build FileBrowser",                              //
       "Starting to build a FileBrowser using the incoming JSON below",  //
       "FileBrowserNode", "fileBrowserData", "FileBrowserData",          //
       Shape::kUnguarded,
       withCommon(formatFields("browserType", "Set the browserType property",
                               {R"("file")", R"("folder")"}, {80, {}, 3}))},
      {"task header", "LumoTaskHeaderBuilderImpl",  //
       Rule::kHostClassName, "LumoAppLineNode",     //
       "Checking if can build LumoAppLineNode",     //
       "Starting to build a LumoAppLineNode",       //
       "LumoAppLineNode", "", "",                   //
       Shape::kHeader, headerFields()},
      {"task", "LumoTaskIntegratedInlineNodeBuilderImpl",              //
       Rule::kClassName, "LumoAppIntegratedInlineNode",                //
       "Checking if can build LumoAppIntegratedInline",                //
       "Starting to build a LumoAppIntegratedNode",                    //
       "LumoAppIntegratedInlineNode", "lumoTaskData", "LumoTaskData",  //
       Shape::kTask, taskFields()},
      {"range slider", "RangeSliderNodeBuilderImpl",                         //
       Rule::kClassName, "RangeSliderControlNode",                           //
       "Checking if can build RangeSliderNode",                              //
       "Starting to build a RangeSliderNode using the incoming JSON below",  //
       "RangeSliderNode", "rangeSliderData", "RangeSliderData",              //
       Shape::kGuarded,
       withCommon(
           numericFields(defaultValue(Type::kText, {80, {R"("[2 8]")", R"("[0.25 0.75]")"}})))},
      {"slider", "SliderNodeBuilderImpl",                               //
       Rule::kTypeWord, "slider",                                       //
       "Checking if can build SliderNode",                              //
       "Starting to build a SliderNode using the incoming JSON below",  //
       "SliderNode", "sliderData", "SliderData",                        //
       Shape::kGuarded, withCommon(numericFields(defaultValue(Type::kNumber)))},
      {"spinner", "SpinnerNodeBuilderImpl",                              //
       Rule::kClassName, "SpinnerControlNode",                           //
       "Checking if can build SpinnerNode",                              //
       "Starting to build a SpinnerNode using the incoming JSON below",  //
       "SpinnerNode", "spinnerData", "SpinnerData",                      //
       Shape::kGuarded, withCommon(numericFields(defaultValue(Type::kNumber)))},
      {"state button", "StateButtonBuilderImpl",                         //
       Rule::kClassName, "StateButtonControlNode",                       //
       "Checking if can build StateButton",                              //
       "Starting to build a StateButton using the incoming JSON below",  //
       "StateButtonNode", "stateButtonData", "StateButtonData",          //
       Shape::kGuarded, withCommon(flagFields())},
  };
  return all;
}

const Kind& kindOf(const std::string& builder) {
  for (const Kind& kind : kinds()) {
    if (kind.builder == builder) return kind;
  }
  throw std::invalid_argument("the contract has no kind for " + builder);
}

const Kind& taskKind() {
  return *std::find_if(kinds().begin(), kinds().end(),
                       [](const Kind& kind) { return kind.shape == Shape::kTask; });
}

}  // namespace contract
