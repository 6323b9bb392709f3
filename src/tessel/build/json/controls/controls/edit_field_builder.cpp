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
// Irregular by contract: the first record names the element that is created, the second one the
// key.
const framework::Field kDefaultValueElement{framework::kDefaultValueKey,
                                            "Found the defaultValueData property",
                                            "Set the defaultValue property"};
const framework::Field kLinkedVariable{framework::kDefaultLinkedVariableKey, framework::kNoRecord,
                                       framework::kNoRecord,
                                       &DefaultValueData::Impl::setDefaultLinkedVariable};

/// The value type whose default value is a number. With every other value type it is text.
constexpr std::u16string_view kNumericValueType = u"Double";

const ControlKind kEditField{"Starting to build a editFieldNode using the incoming JSON below",
                             &document::gxzero::EditFieldNode::Builder::createEditFieldNode,
                             &document::gxzero::EditFieldNode::Impl::createIntoEditFieldData};

/// Leaves the default value unset if the value is no double.
DefaultValueData createNumericDefault(const Model& model, const Value& value) {
  auto element = framework::createInModel(
      model, &DoubleDefaultValueData::Builder::createDoubleDefaultValueData);
  if (foundation::json::get_if<double>(value) != nullptr) {
    element.get()->setDefaultValue(framework::readDouble(value));
  }
  return element;
}

/// @throws std::runtime_error the conversion error, for a value that is not text.
DefaultValueData createTextDefault(const Model& model, const Value& value) {
  auto element = framework::createInModel(
      model, &StringDefaultValueData::Builder::createStringDefaultValueData);
  element.get()->setDefaultValue(framework::readText(value));
  return element;
}

}  // namespace

bool EditFieldBuilderImpl::canBuild(const Value& json) const {
  // Irregular by contract: this is the combo box's record.
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
    // Required if there is a default value, and read only then.
    framework::required(*fields, element, kLinkedVariable);
    data.get()->setDefaultValueData(element);
  });
}

}  // namespace tessel::build::json::controls
