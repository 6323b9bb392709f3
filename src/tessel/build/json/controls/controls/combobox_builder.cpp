#include "controls/control_builders.hpp"

#include <string>

#include "controls/common_fields.hpp"
#include "controls/control_build.hpp"
#include "controls/control_fields.hpp"
#include "framework/diagnostics.hpp"
#include "framework/element_creation.hpp"
#include "framework/element_sequence.hpp"
#include "framework/field.hpp"
#include "framework/json_access.hpp"
#include "framework/recognition.hpp"

namespace tessel::build::json::controls {

using framework::narrated;
using framework::optional;
using lumocode::contentmodel::gxzero::ComboboxData;
using lumocode::contentmodel::gxzero::ComboboxItem;
using lumocode::contentmodel::gxzero::ComboboxItemLabel;

namespace {

const framework::Field kLinkedVariable{"linkedVariable", "Found the linkedVariable property",
                                       "Set the linkedVariable property",
                                       &ComboboxData::Impl::setLinkedVariable};
const framework::Field kItems{"items", "Found the items property", "Set the items property"};
const framework::Field kItemLabels{"itemLabels", "Found the item labels property",
                                   "Set the item labels property"};
const std::string kLabelKey = "label";
const std::string kValueKey = "value";

const ControlKind kCombobox{"Starting to build a comboBoxNode using the incoming JSON below",
                            &document::gxzero::ComboboxNode::Builder::createComboboxNode,
                            &document::gxzero::ComboboxNode::Impl::createIntoComboBoxData};

void applyItems(const Model& model, const ComboboxData& data, const Value& items) {
  auto& sequence = data.get()->getItemsMutable();
  // Irregular by contract, in its wording and its place: it is written before the array is read,
  // and so even if the value is no array.
  framework::logDiagnostic("Got items ka array");
  for (const Value& entry : framework::readArray(items)) {
    framework::logDiagnostic([&entry] { return foundation::json::pretty_print(entry); });
    const auto item = framework::createInModel(model, &ComboboxItem::Builder::createComboboxItem);
    item.get()->setLabel(framework::readText(entry[kLabelKey]));
    item.get()->setItem(framework::readText(entry[kValueKey]));
    framework::append(sequence, item);
  }
}

void applyItemLabels(const Model& model, const ComboboxData& data, const Value& itemLabels) {
  auto& sequence = data.get()->getItemLabelsMutable();
  for (const Value& entry : framework::readArray(itemLabels)) {
    const auto label =
        framework::createInModel(model, &ComboboxItemLabel::Builder::createComboboxItemLabel);
    label.get()->setLabel(framework::readText(entry));
    framework::append(sequence, label);
  }
}

}  // namespace

bool ComboboxBuilderImpl::canBuild(const Value& json) const {
  framework::logDiagnostic("Checking if can build ComboBox");
  return framework::recognizeByTypeWord(json, "comboBox");
}

Node ComboboxBuilderImpl::build(const Model& model, const Value& json) const {
  return buildControl(kCombobox, model, json, [&model, &json](const ComboboxData& data) {
    applyComboboxData(model, data, json);
  });
}

void ComboboxBuilderImpl::applyComboboxData(const Model& model, ComboboxData data,
                                            const Value& json) {
  const Value* fields = findControlFields(json);
  if (fields == nullptr) return;
  applyControlData(data, json, *fields);
  optional(*fields, data, kDefaultValue<ComboboxData>);
  optional(*fields, data, kLinkedVariable);
  narrated(*fields, kItems,
           [&model, &data](const Value& items) { applyItems(model, data, items); });
  narrated(*fields, kItemLabels,
           [&model, &data](const Value& labels) { applyItemLabels(model, data, labels); });
}

}  // namespace tessel::build::json::controls
