#include "contract/kinds.hpp"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace contract {

namespace {

using Fields = std::vector<FieldSpec>;
using Values = std::vector<std::string>;

/// A key of "data" with a log record before it is read and one after it is set.
FieldSpec pair(const std::string& key, Type type, const std::string& property,
               const std::string& subject, Usage usage = {}) {
  FieldSpec field{key, type, property, "Found the " + subject + " property",
                  "Set the " + subject + " property"};
  field.usage = std::move(usage);
  return field;
}

/// The same for a key whose name is that of the property and stands in the records, too.
FieldSpec pair(const std::string& key, Type type, Usage usage = {}) {
  return pair(key, type, key, key, std::move(usage));
}

FieldSpec silent(const std::string& key, Type type, const std::string& property,
                 FieldSpec::Holder holder) {
  FieldSpec field{key, type, property, "", ""};
  field.place = FieldSpec::Place::kObject;
  field.holder = holder;
  return field;
}

FieldSpec defaultValue(Type type, Usage usage = {80}) {
  return pair("defaultValue", type, std::move(usage));
}

FieldSpec defaultLinkedVariable() {
  return pair("defaultValueLinkedVariable", Type::kText, "defaultLinkedVariable",
              "defaultValueLinkedVariable", {40});
}

/// What every control carries, in front of a kind's own fields.
Fields withCommon(Fields own) {
  FieldSpec code = pair("text", Type::kText, "code", "code", {80, {}, 6});
  code.place = FieldSpec::Place::kObject;
  Fields fields = {
      silent("startColumn", Type::kColumn, "startColumn", FieldSpec::Holder::kPosition),
      silent("endColumn", Type::kColumn, "endColumn", FieldSpec::Holder::kPosition),
      silent("controlId", Type::kTextOrNothing, "id", FieldSpec::Holder::kNode),
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
  return {defaultValue(Type::kFlag), defaultLinkedVariable()};
}

Fields numericFields(const FieldSpec& defaultValue) {
  FieldSpec maximumLinkedVariable =
      pair("maxLinkedVariable", Type::kText, "maximumLinkedVariable", "maxLinkedVariable", {20});
  // Irregular by contract: the found-record comes twice.
  maximumLinkedVariable.set = maximumLinkedVariable.found;
  return {
      pair("executionOn", Type::kText, "executeOn", "executionOn",
           {50, {R"("release")", R"("change")"}}),
      pair("minimum", Type::kNumber, "min", "min", {90}),
      pair("maximum", Type::kNumber, "max", "max", {90}),
      pair("step", Type::kNumber, {90}),
      defaultLinkedVariable(),
      pair("minLinkedVariable", Type::kText, "minimumLinkedVariable", "minLinkedVariable", {20}),
      maximumLinkedVariable,
      pair("stepLinkedVariable", Type::kText, {20}),
      defaultValue,
  };
}

/// A format that is read without a test, and the default value.
Fields formatFields(const std::string& key, const std::string& set, const Values& formats,
                    Usage defaults) {
  FieldSpec format{key, Type::kText, key, "", set};
  format.required = true;
  format.usage.values = formats;
  return {format, defaultValue(Type::kText, std::move(defaults))};
}

/// Irregular by contract: whatever the key of the format, the record names the first one.
constexpr const char* kSetFormat = "Set the colorFormat property";

Fields comboboxFields() {
  return {
      defaultValue(Type::kText),
      pair("linkedVariable", Type::kText, {40}),
      pair("items", Type::kItems),
      pair("itemLabels", Type::kItemLabels, "itemLabels", "item labels", {50}),
  };
}

Fields editFieldFields() {
  FieldSpec value{"defaultValue", Type::kDefault, "defaultValueData",
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
    FieldSpec result = silent(key, type, property, FieldSpec::Holder::kData);
    result.found = "Setting the " + key + " property";
    result.usage = std::move(usage);
    return result;
  };
  FieldSpec id = field("instanceId", Type::kText, "id", {});
  id.holder = FieldSpec::Holder::kNode;
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
  FieldSpec children = silent("children", Type::kChildren, "children", FieldSpec::Holder::kNode);
  children.required = true;
  return {silent("anchorId", Type::kAnchor, "anchorId", FieldSpec::Holder::kNode), children};
}

/// A kind, put together part by part.
class Described {
 public:
  Described(std::string name, std::string builder) {
    kind_.name = std::move(name);
    kind_.builder = std::move(builder);
  }

  /// @param asked the log record of a recognition.
  Described& claims(Rule rule, std::string word, std::string asked) {
    kind_.rule = rule;
    kind_.word = std::move(word);
    kind_.asked = std::move(asked);
    return *this;
  }
  /// @param start the log record at the start of a build.
  Described& makes(std::string node, std::string start) {
    kind_.node = std::move(node);
    kind_.start = std::move(start);
    return *this;
  }
  Described& keeps(std::string dataClass, std::string slot) {
    kind_.dataClass = std::move(dataClass);
    kind_.slot = std::move(slot);
    return *this;
  }
  Described& reads(Shape shape, Fields fields) {
    kind_.shape = shape;
    kind_.fields = std::move(fields);
    return *this;
  }

  operator Kind() const { return kind_; }

 private:
  Kind kind_{};
};

}  // namespace

const char* const kGenericControl = "LumoControlNode";

std::string nodeClass(const std::string& name) {
  return "document::gxzero::" + name;
}

std::string qualifiedDataClass(const std::string& name) {
  return "lumocode::contentmodel::gxzero::" + name;
}

const std::vector<Kind>& kinds() {
  // The texts stand whole: people search for them.
  static const std::vector<Kind> all = {
      Described("button", "ButtonBuilderImpl")
          .claims(Rule::kTypeWordOrClassName, "button", "Checking if can build Button")
          .makes("ButtonNode", "Starting to build a Button using the incoming JSON below")
          .keeps("ButtonData", "buttonData")
          .reads(Shape::kUnguarded, withCommon({})),
      Described("check box", "CheckBoxBuilderImpl")
          .claims(Rule::kTypeWord, "checkBox", "Checking if can build CheckBox")
          .makes("CheckBoxNode", "Starting to build a CheckBox using the incoming JSON below")
          .keeps("CheckboxData", "checkBoxData")
          .reads(Shape::kGuarded, withCommon(flagFields())),
      Described("colour picker", "ColorPickerBuilderImpl")
          .claims(Rule::kClassName, "ColorPickerControlNode", "Checking if can build ColorPicker")
          .makes("ColorPickerNode", "Starting to build a ColorPicker using the incoming JSON below")
          .keeps("ColorPickerData", "colorPickerData")
          .reads(Shape::kGuarded,
                 withCommon(formatFields("colorFormat", kSetFormat,
                                         {R"("hex")", R"("rgb")", R"("name")"},
                                         {80, {R"("#0072b2")", R"("[0.25 0.5 1]")", R"("red")"}}))),
      Described("combo box", "ComboboxBuilderImpl")
          .claims(Rule::kTypeWord, "comboBox", "Checking if can build ComboBox")
          .makes("ComboboxNode", "Starting to build a comboBoxNode using the incoming JSON below")
          .keeps("ComboboxData", "comboBoxData")
          .reads(Shape::kGuarded, withCommon(comboboxFields())),
      Described("date picker", "DatePickerBuilderImpl")
          .claims(Rule::kHostClassName, "DatePickerControlNode", "Checking if can build DatePicker")
          .makes("DatePickerNode", "Starting to build a DatePicker using the incoming JSON below")
          .keeps("DatePickerData", "datePickerData")
          .reads(Shape::kGuarded,
                 withCommon(formatFields(
                     "displayFormat", kSetFormat,
                     {R"("yyyy-MM-dd")", R"("dd.MM.yyyy HH:mm")", R"("MM/dd")"},
                     {80, {R"("2026-03-01")", R"("01.03.2026 12:00")", R"("03/01")"}}))),
      Described("edit field", "EditFieldBuilderImpl")
          // Irregular by contract: the edit field asks in the combo box's words.
          .claims(Rule::kTypeWord, "editField", "Checking if can build ComboBox")
          .makes("EditFieldNode", "Starting to build a editFieldNode using the incoming JSON below")
          .keeps("EditFieldData", "editFieldData")
          .reads(Shape::kGuarded, withCommon(editFieldFields())),
      Described("file browser", "FileBrowserBuilderImpl")
          .claims(Rule::kClassName, "FileBrowserControlNode", "Checking if can build FileBrowser")
          .makes("FileBrowserNode", "Starting to build a FileBrowser using the incoming JSON below")
          .keeps("FileBrowserData", "fileBrowserData")
          .reads(Shape::kUnguarded,
                 withCommon(formatFields("browserType", "Set the browserType property",
                                         {R"("file")", R"("folder")"}, {80, {}, 3}))),
      Described("task header", "LumoTaskHeaderBuilderImpl")
          .claims(Rule::kHostClassName, "LumoAppLineNode", "Checking if can build LumoAppLineNode")
          .makes("LumoAppLineNode", "Starting to build a LumoAppLineNode")
          .reads(Shape::kHeader, headerFields()),
      Described("task", "LumoTaskIntegratedInlineNodeBuilderImpl")
          .claims(Rule::kClassName, "LumoAppIntegratedInlineNode",
                  "Checking if can build LumoAppIntegratedInline")
          .makes("LumoAppIntegratedInlineNode", "Starting to build a LumoAppIntegratedNode")
          .keeps("LumoTaskData", "lumoTaskData")
          .reads(Shape::kTask, taskFields()),
      Described("range slider", "RangeSliderNodeBuilderImpl")
          .claims(Rule::kClassName, "RangeSliderControlNode",
                  "Checking if can build RangeSliderNode")
          .makes("RangeSliderNode",
                 "Starting to build a RangeSliderNode using the incoming JSON below")
          .keeps("RangeSliderData", "rangeSliderData")
          .reads(Shape::kGuarded, withCommon(numericFields(defaultValue(
                                      Type::kText, {80, {R"("[2 8]")", R"("[0.25 0.75]")"}})))),
      Described("slider", "SliderNodeBuilderImpl")
          .claims(Rule::kTypeWord, "slider", "Checking if can build SliderNode")
          .makes("SliderNode", "Starting to build a SliderNode using the incoming JSON below")
          .keeps("SliderData", "sliderData")
          .reads(Shape::kGuarded, withCommon(numericFields(defaultValue(Type::kNumber)))),
      Described("spinner", "SpinnerNodeBuilderImpl")
          .claims(Rule::kClassName, "SpinnerControlNode", "Checking if can build SpinnerNode")
          .makes("SpinnerNode", "Starting to build a SpinnerNode using the incoming JSON below")
          .keeps("SpinnerData", "spinnerData")
          .reads(Shape::kGuarded, withCommon(numericFields(defaultValue(Type::kNumber)))),
      Described("state button", "StateButtonBuilderImpl")
          .claims(Rule::kClassName, "StateButtonControlNode", "Checking if can build StateButton")
          .makes("StateButtonNode", "Starting to build a StateButton using the incoming JSON below")
          .keeps("StateButtonData", "stateButtonData")
          .reads(Shape::kGuarded, withCommon(flagFields())),
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
