#pragma once

/// @file
/// The model classes of the second host: the setters and create operations of each, over the bag of
/// values that every element is.

#include <boost/uuid/uuid.hpp>
#include <string>

#include "framework.hpp"

/// The base of a class's builders: it has the create operation that bears the class's name.
#define SECOND_HOST_CREATES(Name)                                               \
  template <typename Self>                                                      \
  struct BuilderBase : gx::zero::Creator {                                      \
    using Creator::Creator;                                                     \
    gx::zero::Handle<Name##Impl> create##Name(const boost::uuids::uuid& uuid) { \
      return create<Name##Impl>(uuid);                                          \
    }                                                                           \
  };

namespace lumocode::contentmodel::gxzero {

using gx::zero::Handle;
using Text = const std::u16string&;

/// Every record has the setters of all of them. Only what differs from class to class in more than
/// its presence has classes of its own.
struct RecordImpl : gx::zero::ModelElementImpl {
  bool setLabel(Text value) { return keep("label", value); }
  bool setCode(Text value) { return keep("code", value); }
  bool setExecutionModel(Text value) { return keep("executionModel", value); }
  bool setExecuteOn(Text value) { return keep("executeOn", value); }
  bool setMin(double value) { return keep("min", value); }
  bool setMax(double value) { return keep("max", value); }
  bool setStep(double value) { return keep("step", value); }
  bool setDefaultLinkedVariable(Text value) { return keep("defaultLinkedVariable", value); }
  bool setMinimumLinkedVariable(Text value) { return keep("minimumLinkedVariable", value); }
  bool setMaximumLinkedVariable(Text value) { return keep("maximumLinkedVariable", value); }
  bool setStepLinkedVariable(Text value) { return keep("stepLinkedVariable", value); }
  bool setLinkedVariable(Text value) { return keep("linkedVariable", value); }
  bool setItem(Text value) { return keep("item", value); }
  bool setValueType(Text value) { return keep("valueType", value); }
  bool setColorFormat(Text value) { return keep("colorFormat", value); }
  bool setDisplayFormat(Text value) { return keep("displayFormat", value); }
  bool setBrowserType(Text value) { return keep("browserType", value); }
};
using LumoControlData = Handle<RecordImpl>;
using ButtonData = LumoControlData;
using NumericControlData = LumoControlData;
using DefaultValueData = LumoControlData;

template <typename Default>
struct DefaultingRecordImpl : RecordImpl {
  bool setDefaultValue(const Default& value) { return keep("defaultValue", value); }
};
using BooleanControlData = Handle<DefaultingRecordImpl<bool>>;
using CheckboxData = BooleanControlData;
using StateButtonData = BooleanControlData;
using ScalarControlData = Handle<DefaultingRecordImpl<double>>;
using SliderData = ScalarControlData;
using SpinnerData = ScalarControlData;
using StringControlData = Handle<DefaultingRecordImpl<std::u16string>>;
using RangeSliderData = StringControlData;
using ColorPickerData = StringControlData;
using DatePickerData = StringControlData;
using FileBrowserData = StringControlData;

struct ComboboxItemImpl : RecordImpl {
  SECOND_HOST_CREATES(ComboboxItem)
};
using ComboboxItem = Handle<ComboboxItemImpl>;

struct ComboboxItemLabelImpl : RecordImpl {
  SECOND_HOST_CREATES(ComboboxItemLabel)
};
using ComboboxItemLabel = Handle<ComboboxItemLabelImpl>;

struct ComboboxDataImpl : DefaultingRecordImpl<std::u16string> {
  gx::zero::ElementSequence<ComboboxItem>& getItemsMutable() { return items; }
  gx::zero::ElementSequence<ComboboxItemLabel>& getItemLabelsMutable() { return itemLabels; }

  gx::zero::ElementSequence<ComboboxItem> items{*this, "items", {}};
  gx::zero::ElementSequence<ComboboxItemLabel> itemLabels{*this, "itemLabels", {}};
};
using ComboboxData = Handle<ComboboxDataImpl>;

struct DoubleDefaultValueDataImpl : DefaultingRecordImpl<double> {
  SECOND_HOST_CREATES(DoubleDefaultValueData)
};
using DoubleDefaultValueData = Handle<DoubleDefaultValueDataImpl>;

struct StringDefaultValueDataImpl : DefaultingRecordImpl<std::u16string> {
  SECOND_HOST_CREATES(StringDefaultValueData)
};
using StringDefaultValueData = Handle<StringDefaultValueDataImpl>;

struct EditFieldDataImpl : RecordImpl {
  bool setDefaultValueData(const DefaultValueData& value) {
    return keep("defaultValueData", gx::zero::ModelElement(value));
  }
};
using EditFieldData = Handle<EditFieldDataImpl>;

/// A value, told in one line.
class LumoTaskData {
 public:
  LumoTaskData& setTaskId(Text value) { return add("taskId", value); }
  LumoTaskData& setAppIdentifier(Text value) { return add("appIdentifier", value); }
  LumoTaskData& setView(Text value) { return add("view", value); }
  LumoTaskData& setCollapsed(Text value) { return add("collapsed", value); }
  LumoTaskData& setAppVariables(Text value) { return add("appVariables", value); }
  LumoTaskData& setAppVariablesUserMap(Text value) { return add("appVariablesUserMap", value); }
  LumoTaskData& setExecutionModel(Text value) { return add("executionModel", value); }
  LumoTaskData& setAppState(Text value) { return add("appState", value); }
  LumoTaskData& setAutoRun(Text value) { return add("autoRun", value); }
  LumoTaskData& setText(Text value) { return add("text", value); }
  LumoTaskData& setNumCodeLines(unsigned short value) {
    const std::string digits = std::to_string(value);
    return add("numCodeLines", {digits.begin(), digits.end()});
  }
  const std::u16string& told() const { return told_; }

 private:
  LumoTaskData& add(const std::string& name, const std::u16string& value) {
    if (!value.empty()) told_ += std::u16string(name.begin(), name.end()) + u':' + value + u' ';
    return *this;
  }

  std::u16string told_;
};

}  // namespace lumocode::contentmodel::gxzero

namespace document::gxzero {

namespace content = lumocode::contentmodel::gxzero;

struct LumoControlPositionImpl : gx::zero::ModelElementImpl {
  bool setStartColumn(unsigned long long value) { return keep("startColumn", value); }
  bool setEndColumn(unsigned long long value) { return keep("endColumn", value); }
};
using LumoControlPosition = gx::zero::Handle<LumoControlPositionImpl>;

struct NodeImpl : gx::zero::ModelElementImpl {
  bool setAnchorId(content::Text value) { return keep("anchorId", value); }
  gx::zero::ElementSequence<gx::zero::Handle<NodeImpl>>& getChildrenMutable() { return children; }

  gx::zero::ElementSequence<gx::zero::Handle<NodeImpl>> children{
      *this, "children", {"container", false}};
};
using Node = gx::zero::Handle<NodeImpl>;

struct LumoControlNodeImpl : NodeImpl {
  bool setId(content::Text value) { return keep("id", value); }
  LumoControlPosition createIntoPosition(LumoControlPosition::BuilderWrapper,
                                         const boost::uuids::uuid& uuid) {
    return keepNew<LumoControlPositionImpl>("position", uuid);
  }
};
using LumoControlNode = gx::zero::Handle<LumoControlNodeImpl>;

/// A control's node, and the record that it creates into itself.
#define SECOND_HOST_CONTROL(Node, Data, Slot)                        \
  struct Node##Impl : LumoControlNodeImpl {                          \
    SECOND_HOST_CREATES(Node)                                        \
    content::Data createInto##Slot(content::Data::BuilderWrapper,    \
                                   const boost::uuids::uuid& uuid) { \
      return keepNew<content::Data::Impl>("data", uuid);             \
    }                                                                \
  };                                                                 \
  using Node = gx::zero::Handle<Node##Impl>;

SECOND_HOST_CONTROL(ButtonNode, ButtonData, ButtonData)
SECOND_HOST_CONTROL(CheckBoxNode, CheckboxData, CheckBoxData)
SECOND_HOST_CONTROL(ColorPickerNode, ColorPickerData, ColorPickerData)
SECOND_HOST_CONTROL(ComboboxNode, ComboboxData, ComboBoxData)
SECOND_HOST_CONTROL(DatePickerNode, DatePickerData, DatePickerData)
SECOND_HOST_CONTROL(EditFieldNode, EditFieldData, EditFieldData)
SECOND_HOST_CONTROL(FileBrowserNode, FileBrowserData, FileBrowserData)
SECOND_HOST_CONTROL(RangeSliderNode, RangeSliderData, RangeSliderData)
SECOND_HOST_CONTROL(SliderNode, SliderData, SliderData)
SECOND_HOST_CONTROL(SpinnerNode, SpinnerData, SpinnerData)
SECOND_HOST_CONTROL(StateButtonNode, StateButtonData, StateButtonData)

#undef SECOND_HOST_CONTROL

struct LumoAppLineNodeImpl : NodeImpl {
  SECOND_HOST_CREATES(LumoAppLineNode)
};
using LumoAppLineNode = gx::zero::Handle<LumoAppLineNodeImpl>;

struct LumoAppIntegratedInlineNodeImpl : NodeImpl {
  SECOND_HOST_CREATES(LumoAppIntegratedInlineNode)
  bool setId(content::Text value) { return keep("id", value); }
  bool setLumoTaskData(const content::LumoTaskData& value) { return keep("task", value.told()); }
};
using LumoAppIntegratedInlineNode = gx::zero::Handle<LumoAppIntegratedInlineNodeImpl>;

}  // namespace document::gxzero

#undef SECOND_HOST_CREATES
