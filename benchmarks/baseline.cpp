#include "baseline.hpp"

#include <boost/uuid/uuid.hpp>
#include <cmath>
#include <cstdint>
#include <utility>

#include "fl/i18n.hpp"
#include "lumocode/contentmodel/gxzero.hpp"

namespace benchmarks {

namespace {

using namespace document::gxzero;
using gx::zero::Model;
using namespace lumocode::contentmodel::gxzero;

constexpr boost::uuids::uuid kNilUuid{};

std::u16string utf16(const std::string& utf8) {
  return fl::i18n::utf8_to_ustring(utf8);
}

std::u16string utf16(const std::optional<std::string>& utf8) {
  return utf8 ? utf16(*utf8) : std::u16string();
}

/// The values at hand are columns of a document: no other double needs a thought here.
std::uint64_t toColumn(double value) {
  return static_cast<std::uint64_t>(std::trunc(value));
}

void setCommon(LumoControlData::Impl& data, const CommonFields<std::string>& control) {
  if (control.executionModel) data.setExecutionModel(utf16(*control.executionModel));
  if (control.label) data.setLabel(utf16(*control.label));
  if (control.code) data.setCode(utf16(*control.code));
}

void setNumeric(NumericControlData::Impl& data, const NumericFields<std::string>& control) {
  setCommon(data, control);
  if (control.executeOn) data.setExecuteOn(utf16(*control.executeOn));
  if (control.minimum) data.setMin(*control.minimum);
  if (control.maximum) data.setMax(*control.maximum);
  if (control.step) data.setStep(*control.step);
  if (control.defaultLinkedVariable) {
    data.setDefaultLinkedVariable(utf16(*control.defaultLinkedVariable));
  }
  if (control.minimumLinkedVariable) {
    data.setMinimumLinkedVariable(utf16(*control.minimumLinkedVariable));
  }
  if (control.maximumLinkedVariable) {
    data.setMaximumLinkedVariable(utf16(*control.maximumLinkedVariable));
  }
  if (control.stepLinkedVariable) data.setStepLinkedVariable(utf16(*control.stepLinkedVariable));
}

void setFields(const Model&, const ButtonData& data, const Button<std::string>& control) {
  setCommon(*data.get(), control);
}

void setFields(const Model&, const BooleanControlData& data,
               const BooleanFields<std::string>& control) {
  setCommon(*data.get(), control);
  if (control.defaultValue) data.get()->setDefaultValue(*control.defaultValue);
  if (control.defaultLinkedVariable) {
    data.get()->setDefaultLinkedVariable(utf16(*control.defaultLinkedVariable));
  }
}

void setFields(const Model&, const ScalarControlData& data,
               const ScalarFields<std::string>& control) {
  setNumeric(*data.get(), control);
  if (control.defaultValue) data.get()->setDefaultValue(*control.defaultValue);
}

void setFields(const Model&, const RangeSliderData& data, const RangeSlider<std::string>& control) {
  setNumeric(*data.get(), control);
  if (control.defaultValue) data.get()->setDefaultValue(utf16(*control.defaultValue));
}

template <typename Data, typename Impl>
void setPicker(const Data& data, void (Impl::*setFormat)(const std::u16string&),
               const PickerFields<std::string>& control) {
  setCommon(*data.get(), control);
  (data.get()->*setFormat)(utf16(*control.format));
  if (control.defaultValue) data.get()->setDefaultValue(utf16(*control.defaultValue));
}

void setFields(const Model&, const ColorPickerData& data, const ColorPicker<std::string>& control) {
  setPicker(data, &ColorPickerData::Impl::setColorFormat, control);
}

void setFields(const Model&, const DatePickerData& data, const DatePicker<std::string>& control) {
  setPicker(data, &DatePickerData::Impl::setDisplayFormat, control);
}

void setFields(const Model&, const FileBrowserData& data, const FileBrowser<std::string>& control) {
  setPicker(data, &FileBrowserData::Impl::setBrowserType, control);
}

/// An append's calls to the host, for an element that is new.
template <typename Element>
void append(gx::zero::ElementSequence<Element>& sequence, const Element& element) {
  sequence.checkCompatibleModel(element.get());
  const gx::zero::meta::Property& opposite = *sequence.getOpposite();
  const auto container = element.get()->get(
      opposite, gx::zero::ModelElement::Impl::ReflectionPrivateTag::PUBLIC_ACCESS);
  if (held_element(container).get() == sequence.getOwner()) return;
  gx::zero::AbstractOwnedCollection::Operation operation(sequence);
  insert_last(sequence, element);
  sequence.getOwner()->_inverseAddThis(element.get(), opposite, false);
  operation.commit();
}

void setFields(const Model& model, const ComboboxData& data, const Combobox<std::string>& control) {
  setCommon(*data.get(), control);
  if (control.defaultValue) data.get()->setDefaultValue(utf16(*control.defaultValue));
  if (control.linkedVariable) data.get()->setLinkedVariable(utf16(*control.linkedVariable));
  auto& items = data.get()->getItemsMutable();
  for (const auto& each : control.items) {
    const ComboboxItem item = ComboboxItem::Builder(model).createComboboxItem(kNilUuid);
    item.get()->setLabel(utf16(*each.label));
    item.get()->setItem(utf16(*each.value));
    append(items, item);
  }
  auto& labels = data.get()->getItemLabelsMutable();
  for (const auto& each : control.itemLabels) {
    const ComboboxItemLabel label =
        ComboboxItemLabel::Builder(model).createComboboxItemLabel(kNilUuid);
    label.get()->setLabel(utf16(*each));
    append(labels, label);
  }
}

DefaultValueData createDefault(const Model& model, const EditField<std::string>& control) {
  if (control.number) {
    auto element = DoubleDefaultValueData::Builder(model).createDoubleDefaultValueData(kNilUuid);
    element.get()->setDefaultValue(*control.number);
    return element;
  }
  auto element = StringDefaultValueData::Builder(model).createStringDefaultValueData(kNilUuid);
  element.get()->setDefaultValue(utf16(*control.text));
  return element;
}

void setFields(const Model& model, const EditFieldData& data,
               const EditField<std::string>& control) {
  setCommon(*data.get(), control);
  if (control.valueType) data.get()->setValueType(utf16(*control.valueType));
  const DefaultValueData element = createDefault(model, control);
  element.get()->setDefaultLinkedVariable(utf16(*control.defaultLinkedVariable));
  data.get()->setDefaultValueData(element);
}

/// A control with its position and its data object.
template <typename ControlNode, typename NodeFactory, typename Data, typename NodeImpl,
          typename Control>
Node createControl(const Model& model,
                   ControlNode (NodeFactory::*createNode)(const boost::uuids::uuid&),
                   Data (NodeImpl::*createIntoData)(typename Data::BuilderWrapper,
                                                    const boost::uuids::uuid&),
                   const Control& control) {
  typename ControlNode::Builder builder(model);
  ControlNode node = (builder.*createNode)(kNilUuid);
  const auto position = node.get()->createIntoPosition(LumoControlPosition::Builder(), kNilUuid);
  if (control.startColumn) position.get()->setStartColumn(toColumn(*control.startColumn));
  if (control.endColumn) position.get()->setEndColumn(toColumn(*control.endColumn));
  if (control.id) node.get()->setId(utf16(*control.id));
  const Data data = (node.get()->*createIntoData)(typename Data::Builder(), kNilUuid);
  setFields(model, data, control);
  return Node(std::move(node));
}

/// A kind with the host's factories of its node and its data object.
template <template <typename> typename Control, auto createNode, auto createIntoData>
struct ControlMaker {
  Node operator()(const Model& model, const Control<std::string>& control) const {
    return createControl(model, createNode, createIntoData, control);
  }
};

template <typename... Makers>
struct AnyOf : Makers... {
  using Makers::operator()...;
};

using AnyControlMaker =
    AnyOf<ControlMaker<Button, &ButtonNode::Builder::createButtonNode,
                       &ButtonNode::Impl::createIntoButtonData>,
          ControlMaker<CheckBox, &CheckBoxNode::Builder::createCheckBoxNode,
                       &CheckBoxNode::Impl::createIntoCheckBoxData>,
          ControlMaker<ColorPicker, &ColorPickerNode::Builder::createColorPickerNode,
                       &ColorPickerNode::Impl::createIntoColorPickerData>,
          ControlMaker<Combobox, &ComboboxNode::Builder::createComboboxNode,
                       &ComboboxNode::Impl::createIntoComboBoxData>,
          ControlMaker<DatePicker, &DatePickerNode::Builder::createDatePickerNode,
                       &DatePickerNode::Impl::createIntoDatePickerData>,
          ControlMaker<EditField, &EditFieldNode::Builder::createEditFieldNode,
                       &EditFieldNode::Impl::createIntoEditFieldData>,
          ControlMaker<FileBrowser, &FileBrowserNode::Builder::createFileBrowserNode,
                       &FileBrowserNode::Impl::createIntoFileBrowserData>,
          ControlMaker<RangeSlider, &RangeSliderNode::Builder::createRangeSliderNode,
                       &RangeSliderNode::Impl::createIntoRangeSliderData>,
          ControlMaker<Slider, &SliderNode::Builder::createSliderNode,
                       &SliderNode::Impl::createIntoSliderData>,
          ControlMaker<Spinner, &SpinnerNode::Builder::createSpinnerNode,
                       &SpinnerNode::Impl::createIntoSpinnerData>,
          ControlMaker<StateButton, &StateButtonNode::Builder::createStateButtonNode,
                       &StateButtonNode::Impl::createIntoStateButtonData>>;

template <typename Control>
Node create(const Model& model, const Control& control) {
  return AnyControlMaker()(model, control);
}

Node create(const Model& model, const Task<std::string>& task) {
  LumoAppIntegratedInlineNode node =
      LumoAppIntegratedInlineNode::Builder(model).createLumoAppIntegratedInlineNode(kNilUuid);
  node.get()->setId(utf16(task.instanceId));
  LumoTaskData data;
  data.setTaskId(utf16(task.taskId));
  data.setAppIdentifier(utf16(task.appIdentifier));
  data.setView(utf16(task.view));
  data.setCollapsed(utf16(task.collapsed));
  data.setAppVariables(utf16(task.appVariables));
  data.setAppVariablesUserMap(utf16(task.appVariablesUserMap));
  data.setExecutionModel(utf16(task.executionModel));
  data.setAppState(utf16(task.appState));
  data.setAutoRun(utf16(task.autoRun));
  data.setText(utf16(task.text));
  data.setNumCodeLines(static_cast<unsigned short>(task.codeLines.value_or(0)));
  node.get()->setLumoTaskData(std::move(data));
  return Node(std::move(node));
}

Node create(const Model& model, const TaskHeader<std::string>& header) {
  LumoAppLineNode line = LumoAppLineNode::Builder(model).createLumoAppLineNode(kNilUuid);
  const std::string& anchor = *header.anchorId;
  line.get()->setAnchorId(utf16(anchor.compare(0, 2, "M_") == 0 ? anchor : "M_" + anchor));
  auto& children = line.get()->getChildrenMutable();
  for (const Task<std::string>& task : header.tasks) append(children, create(model, task));
  return Node(std::move(line));
}

}  // namespace

document::gxzero::Node createElements(const Model& model,
                                      const PlainControl<std::string>& control) {
  return std::visit([&model](const auto& each) { return create(model, each); }, control);
}

}  // namespace benchmarks
