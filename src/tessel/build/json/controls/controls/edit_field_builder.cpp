#include "controls/control_builders.hpp"

#include <string_view>

#include "controls/common_fields.hpp"
#include "controls/control_build.hpp"
#include "controls/control_fields.hpp"
#include "framework/diagnostics.hpp"
#include "framework/element_creation.hpp"
#include "framework/field.hpp"
#include "framework/json_access.hpp"
#include "framework/json_keys.hpp"
#include "framework/recognition.hpp"

namespace tessel::build::json::controls {

using lumocode::contentmodel::gxzero::DefaultValueData;
using lumocode::contentmodel::gxzero::DoubleDefaultValueData;
using lumocode::contentmodel::gxzero::EditFieldData;
using lumocode::contentmodel::gxzero::StringDefaultValueData;

namespace {

const framework::Field kValueType{"valueType", "Found the valueType property",
                                  "Set the valueType property", &EditFieldData::Impl::setValueType};
// Meant: the first record is named after the element that is made, the second one after the key.
const framework::Field kDefaultValueElement{framework::kDefaultValueKey,
                                            "Found the defaultValueData property",
                                            "Set the defaultValue property"};
const framework::Field kLinkedVariable{framework::kDefaultLinkedVariableKey, framework::kNoRecord,
                                       framework::kNoRecord,
                                       &DefaultValueData::Impl::setDefaultLinkedVariable};

/// The value type whose default value is a number; with every other one it is text.
constexpr std::u16string_view kNumericValueType = u"Double";

const ControlKind kEditField{"Starting to build a editFieldNode using the incoming JSON below",
                             &document::gxzero::EditFieldNode::Builder::createEditFieldNode,
                             &document::gxzero::EditFieldNode::Impl::createIntoEditFieldData};

/// A value that is no double leaves the default value unset.
DefaultValueData createNumericDefault(const Model& model, const Value& value) {
  auto element = framework::createInModel(
      model, &DoubleDefaultValueData::Builder::createDoubleDefaultValueData);
  if (foundation::json::get_if<double>(value) != nullptr) {
    element.get()->setDefaultValue(framework::readDouble(value));
  }
  return element;
}

/// A value that is no text is an error.
DefaultValueData createTextDefault(const Model& model, const Value& value) {
  auto element = framework::createInModel(
      model, &StringDefaultValueData::Builder::createStringDefaultValueData);
  element.get()->setDefaultValue(framework::readText(value));
  return element;
}

}  // namespace

bool EditFieldBuilderImpl::canBuild(const Value& json) const {
  // Meant: the edit field asks in the combo box's words.
  framework::logDiagnostic("Checking if can build ComboBox");
  return framework::recognizeByTypeWord(json, "editField");
}

Node EditFieldBuilderImpl::build(const Model& model, const Value& json) const {
  return buildControl(kEditField, model, json, [&model, &json](const EditFieldData& data) {
    applyEditFieldData(model, data, json);
  });
}

void EditFieldBuilderImpl::applyEditFieldData(const Model& model, EditFieldData data,
                                              const Value& json) {
  const Value* fields = findControlFields(json);
  if (fields == nullptr) return;
  applyControlData(data, json, *fields);
  framework::optional(*fields, data, kValueType);
  framework::narrated(*fields, kDefaultValueElement, [&](const Value& value) {
    const DefaultValueData element = value_type(data) == kNumericValueType
                                         ? createNumericDefault(model, value)
                                         : createTextDefault(model, value);
    // Required wherever there is a default value, and never read without one.
    framework::required(*fields, element, kLinkedVariable);
    data.get()->setDefaultValueData(element);
  });
}

}  // namespace tessel::build::json::controls
