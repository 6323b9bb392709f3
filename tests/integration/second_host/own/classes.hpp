#pragma once

/// @file
/// The model classes of the second host: the setters and create operations of each, over the bag of
/// values that every element is.

#include <boost/uuid/uuid.hpp>
#include <string>

#include "framework.hpp"

namespace lumocode::contentmodel::gxzero {

using gx::zero::ModelElementImpl;

struct LumoControlDataImpl : ModelElementImpl {
  bool setLabel(const std::u16string& value) { return keep("label", value); }
  bool setCode(const std::u16string& value) { return keep("code", value); }
  bool setExecutionModel(const std::u16string& value) { return keep("executionModel", value); }
};
using LumoControlData = gx::zero::Handle<LumoControlDataImpl>;

struct ButtonDataImpl : LumoControlDataImpl {};
using ButtonData = gx::zero::Handle<ButtonDataImpl>;

struct BooleanControlDataImpl : LumoControlDataImpl {
  bool setDefaultValue(bool value) { return keep("defaultValue", value); }
  bool setDefaultLinkedVariable(const std::u16string& value) {
    return keep("defaultLinkedVariable", value);
  }
};
using BooleanControlData = gx::zero::Handle<BooleanControlDataImpl>;

struct CheckboxDataImpl : BooleanControlDataImpl {};
using CheckboxData = gx::zero::Handle<CheckboxDataImpl>;

struct StateButtonDataImpl : BooleanControlDataImpl {};
using StateButtonData = gx::zero::Handle<StateButtonDataImpl>;

struct NumericControlDataImpl : LumoControlDataImpl {
  bool setExecuteOn(const std::u16string& value) { return keep("executeOn", value); }
  bool setMin(double value) { return keep("min", value); }
  bool setMax(double value) { return keep("max", value); }
  bool setStep(double value) { return keep("step", value); }
  bool setDefaultLinkedVariable(const std::u16string& value) {
    return keep("defaultLinkedVariable", value);
  }
  bool setMinimumLinkedVariable(const std::u16string& value) {
    return keep("minimumLinkedVariable", value);
  }
  bool setMaximumLinkedVariable(const std::u16string& value) {
    return keep("maximumLinkedVariable", value);
  }
  bool setStepLinkedVariable(const std::u16string& value) {
    return keep("stepLinkedVariable", value);
  }
};
using NumericControlData = gx::zero::Handle<NumericControlDataImpl>;

struct ScalarControlDataImpl : NumericControlDataImpl {
  bool setDefaultValue(double value) { return keep("defaultValue", value); }
};
using ScalarControlData = gx::zero::Handle<ScalarControlDataImpl>;

struct StringControlDataImpl : NumericControlDataImpl {
  bool setDefaultValue(const std::u16string& value) { return keep("defaultValue", value); }
};
using StringControlData = gx::zero::Handle<StringControlDataImpl>;

struct SliderDataImpl : ScalarControlDataImpl {};
using SliderData = gx::zero::Handle<SliderDataImpl>;

struct SpinnerDataImpl : ScalarControlDataImpl {};
using SpinnerData = gx::zero::Handle<SpinnerDataImpl>;

struct RangeSliderDataImpl : StringControlDataImpl {};
using RangeSliderData = gx::zero::Handle<RangeSliderDataImpl>;

struct ComboboxItemImpl : ModelElementImpl {
  template <typename Self>
  struct BuilderBase : gx::zero::Creator {
    using Creator::Creator;
    gx::zero::Handle<ComboboxItemImpl> createComboboxItem(const boost::uuids::uuid& uuid) {
      return create<ComboboxItemImpl>(uuid);
    }
  };
  bool setLabel(const std::u16string& value) { return keep("label", value); }
  bool setItem(const std::u16string& value) { return keep("item", value); }
};
using ComboboxItem = gx::zero::Handle<ComboboxItemImpl>;

struct ComboboxItemLabelImpl : ModelElementImpl {
  template <typename Self>
  struct BuilderBase : gx::zero::Creator {
    using Creator::Creator;
    gx::zero::Handle<ComboboxItemLabelImpl> createComboboxItemLabel(
        const boost::uuids::uuid& uuid) {
      return create<ComboboxItemLabelImpl>(uuid);
    }
  };
  bool setLabel(const std::u16string& value) { return keep("label", value); }
};
using ComboboxItemLabel = gx::zero::Handle<ComboboxItemLabelImpl>;

struct ComboboxDataImpl : LumoControlDataImpl {
  bool setDefaultValue(const std::u16string& value) { return keep("defaultValue", value); }
  bool setLinkedVariable(const std::u16string& value) { return keep("linkedVariable", value); }
  gx::zero::ElementSequence<ComboboxItem>& getItemsMutable() { return items; }
  gx::zero::ElementSequence<ComboboxItemLabel>& getItemLabelsMutable() { return itemLabels; }

  gx::zero::ElementSequence<ComboboxItem> items{*this, "items", {}};
  gx::zero::ElementSequence<ComboboxItemLabel> itemLabels{*this, "itemLabels", {}};
};
using ComboboxData = gx::zero::Handle<ComboboxDataImpl>;

struct DefaultValueDataImpl : ModelElementImpl {
  bool setDefaultLinkedVariable(const std::u16string& value) {
    return keep("defaultLinkedVariable", value);
  }
};
using DefaultValueData = gx::zero::Handle<DefaultValueDataImpl>;

struct DoubleDefaultValueDataImpl : DefaultValueDataImpl {
  template <typename Self>
  struct BuilderBase : gx::zero::Creator {
    using Creator::Creator;
    gx::zero::Handle<DoubleDefaultValueDataImpl> createDoubleDefaultValueData(
        const boost::uuids::uuid& uuid) {
      return create<DoubleDefaultValueDataImpl>(uuid);
    }
  };
  bool setDefaultValue(double value) { return keep("defaultValue", value); }
};
using DoubleDefaultValueData = gx::zero::Handle<DoubleDefaultValueDataImpl>;

struct StringDefaultValueDataImpl : DefaultValueDataImpl {
  template <typename Self>
  struct BuilderBase : gx::zero::Creator {
    using Creator::Creator;
    gx::zero::Handle<StringDefaultValueDataImpl> createStringDefaultValueData(
        const boost::uuids::uuid& uuid) {
      return create<StringDefaultValueDataImpl>(uuid);
    }
  };
  bool setDefaultValue(const std::u16string& value) { return keep("defaultValue", value); }
};
using StringDefaultValueData = gx::zero::Handle<StringDefaultValueDataImpl>;

struct EditFieldDataImpl : LumoControlDataImpl {
  bool setValueType(const std::u16string& value) { return keep("valueType", value); }
  bool setDefaultValueData(const DefaultValueData& value) {
    return keep("defaultValueData", gx::zero::ModelElement(value));
  }
};
using EditFieldData = gx::zero::Handle<EditFieldDataImpl>;

struct ColorPickerDataImpl : LumoControlDataImpl {
  bool setColorFormat(const std::u16string& value) { return keep("colorFormat", value); }
  bool setDefaultValue(const std::u16string& value) { return keep("defaultValue", value); }
};
using ColorPickerData = gx::zero::Handle<ColorPickerDataImpl>;

struct DatePickerDataImpl : LumoControlDataImpl {
  bool setDisplayFormat(const std::u16string& value) { return keep("displayFormat", value); }
  bool setDefaultValue(const std::u16string& value) { return keep("defaultValue", value); }
};
using DatePickerData = gx::zero::Handle<DatePickerDataImpl>;

struct FileBrowserDataImpl : LumoControlDataImpl {
  bool setBrowserType(const std::u16string& value) { return keep("browserType", value); }
  bool setDefaultValue(const std::u16string& value) { return keep("defaultValue", value); }
};
using FileBrowserData = gx::zero::Handle<FileBrowserDataImpl>;

/// A value, told in one line.
class LumoTaskData {
 public:
  LumoTaskData& setTaskId(const std::u16string& value) { return add("taskId", value); }
  LumoTaskData& setAppIdentifier(const std::u16string& value) {
    return add("appIdentifier", value);
  }
  LumoTaskData& setView(const std::u16string& value) { return add("view", value); }
  LumoTaskData& setCollapsed(const std::u16string& value) { return add("collapsed", value); }
  LumoTaskData& setAppVariables(const std::u16string& value) { return add("appVariables", value); }
  LumoTaskData& setAppVariablesUserMap(const std::u16string& value) {
    return add("appVariablesUserMap", value);
  }
  LumoTaskData& setExecutionModel(const std::u16string& value) {
    return add("executionModel", value);
  }
  LumoTaskData& setAppState(const std::u16string& value) { return add("appState", value); }
  LumoTaskData& setAutoRun(const std::u16string& value) { return add("autoRun", value); }
  LumoTaskData& setText(const std::u16string& value) { return add("text", value); }
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
  bool setAnchorId(const std::u16string& value) { return keep("anchorId", value); }
  gx::zero::ElementSequence<gx::zero::Handle<NodeImpl>>& getChildrenMutable() { return children; }

  gx::zero::ElementSequence<gx::zero::Handle<NodeImpl>> children{
      *this, "children", {"container", false}};
};
using Node = gx::zero::Handle<NodeImpl>;

struct LumoControlNodeImpl : NodeImpl {
  bool setId(const std::u16string& value) { return keep("id", value); }
  LumoControlPosition createIntoPosition(LumoControlPosition::BuilderWrapper,
                                         const boost::uuids::uuid& uuid) {
    return keepNew<LumoControlPositionImpl>("position", uuid);
  }
};
using LumoControlNode = gx::zero::Handle<LumoControlNodeImpl>;

struct ButtonNodeImpl : LumoControlNodeImpl {
  template <typename Self>
  struct BuilderBase : gx::zero::Creator {
    using Creator::Creator;
    gx::zero::Handle<ButtonNodeImpl> createButtonNode(const boost::uuids::uuid& uuid) {
      return create<ButtonNodeImpl>(uuid);
    }
  };
  content::ButtonData createIntoButtonData(content::ButtonData::BuilderWrapper,
                                           const boost::uuids::uuid& uuid) {
    return keepNew<content::ButtonDataImpl>("data", uuid);
  }
};
using ButtonNode = gx::zero::Handle<ButtonNodeImpl>;

struct CheckBoxNodeImpl : LumoControlNodeImpl {
  template <typename Self>
  struct BuilderBase : gx::zero::Creator {
    using Creator::Creator;
    gx::zero::Handle<CheckBoxNodeImpl> createCheckBoxNode(const boost::uuids::uuid& uuid) {
      return create<CheckBoxNodeImpl>(uuid);
    }
  };
  content::CheckboxData createIntoCheckBoxData(content::CheckboxData::BuilderWrapper,
                                               const boost::uuids::uuid& uuid) {
    return keepNew<content::CheckboxDataImpl>("data", uuid);
  }
};
using CheckBoxNode = gx::zero::Handle<CheckBoxNodeImpl>;

struct ColorPickerNodeImpl : LumoControlNodeImpl {
  template <typename Self>
  struct BuilderBase : gx::zero::Creator {
    using Creator::Creator;
    gx::zero::Handle<ColorPickerNodeImpl> createColorPickerNode(const boost::uuids::uuid& uuid) {
      return create<ColorPickerNodeImpl>(uuid);
    }
  };
  content::ColorPickerData createIntoColorPickerData(content::ColorPickerData::BuilderWrapper,
                                                     const boost::uuids::uuid& uuid) {
    return keepNew<content::ColorPickerDataImpl>("data", uuid);
  }
};
using ColorPickerNode = gx::zero::Handle<ColorPickerNodeImpl>;

struct ComboboxNodeImpl : LumoControlNodeImpl {
  template <typename Self>
  struct BuilderBase : gx::zero::Creator {
    using Creator::Creator;
    gx::zero::Handle<ComboboxNodeImpl> createComboboxNode(const boost::uuids::uuid& uuid) {
      return create<ComboboxNodeImpl>(uuid);
    }
  };
  content::ComboboxData createIntoComboBoxData(content::ComboboxData::BuilderWrapper,
                                               const boost::uuids::uuid& uuid) {
    return keepNew<content::ComboboxDataImpl>("data", uuid);
  }
};
using ComboboxNode = gx::zero::Handle<ComboboxNodeImpl>;

struct DatePickerNodeImpl : LumoControlNodeImpl {
  template <typename Self>
  struct BuilderBase : gx::zero::Creator {
    using Creator::Creator;
    gx::zero::Handle<DatePickerNodeImpl> createDatePickerNode(const boost::uuids::uuid& uuid) {
      return create<DatePickerNodeImpl>(uuid);
    }
  };
  content::DatePickerData createIntoDatePickerData(content::DatePickerData::BuilderWrapper,
                                                   const boost::uuids::uuid& uuid) {
    return keepNew<content::DatePickerDataImpl>("data", uuid);
  }
};
using DatePickerNode = gx::zero::Handle<DatePickerNodeImpl>;

struct EditFieldNodeImpl : LumoControlNodeImpl {
  template <typename Self>
  struct BuilderBase : gx::zero::Creator {
    using Creator::Creator;
    gx::zero::Handle<EditFieldNodeImpl> createEditFieldNode(const boost::uuids::uuid& uuid) {
      return create<EditFieldNodeImpl>(uuid);
    }
  };
  content::EditFieldData createIntoEditFieldData(content::EditFieldData::BuilderWrapper,
                                                 const boost::uuids::uuid& uuid) {
    return keepNew<content::EditFieldDataImpl>("data", uuid);
  }
};
using EditFieldNode = gx::zero::Handle<EditFieldNodeImpl>;

struct FileBrowserNodeImpl : LumoControlNodeImpl {
  template <typename Self>
  struct BuilderBase : gx::zero::Creator {
    using Creator::Creator;
    gx::zero::Handle<FileBrowserNodeImpl> createFileBrowserNode(const boost::uuids::uuid& uuid) {
      return create<FileBrowserNodeImpl>(uuid);
    }
  };
  content::FileBrowserData createIntoFileBrowserData(content::FileBrowserData::BuilderWrapper,
                                                     const boost::uuids::uuid& uuid) {
    return keepNew<content::FileBrowserDataImpl>("data", uuid);
  }
};
using FileBrowserNode = gx::zero::Handle<FileBrowserNodeImpl>;

struct RangeSliderNodeImpl : LumoControlNodeImpl {
  template <typename Self>
  struct BuilderBase : gx::zero::Creator {
    using Creator::Creator;
    gx::zero::Handle<RangeSliderNodeImpl> createRangeSliderNode(const boost::uuids::uuid& uuid) {
      return create<RangeSliderNodeImpl>(uuid);
    }
  };
  content::RangeSliderData createIntoRangeSliderData(content::RangeSliderData::BuilderWrapper,
                                                     const boost::uuids::uuid& uuid) {
    return keepNew<content::RangeSliderDataImpl>("data", uuid);
  }
};
using RangeSliderNode = gx::zero::Handle<RangeSliderNodeImpl>;

struct SliderNodeImpl : LumoControlNodeImpl {
  template <typename Self>
  struct BuilderBase : gx::zero::Creator {
    using Creator::Creator;
    gx::zero::Handle<SliderNodeImpl> createSliderNode(const boost::uuids::uuid& uuid) {
      return create<SliderNodeImpl>(uuid);
    }
  };
  content::SliderData createIntoSliderData(content::SliderData::BuilderWrapper,
                                           const boost::uuids::uuid& uuid) {
    return keepNew<content::SliderDataImpl>("data", uuid);
  }
};
using SliderNode = gx::zero::Handle<SliderNodeImpl>;

struct SpinnerNodeImpl : LumoControlNodeImpl {
  template <typename Self>
  struct BuilderBase : gx::zero::Creator {
    using Creator::Creator;
    gx::zero::Handle<SpinnerNodeImpl> createSpinnerNode(const boost::uuids::uuid& uuid) {
      return create<SpinnerNodeImpl>(uuid);
    }
  };
  content::SpinnerData createIntoSpinnerData(content::SpinnerData::BuilderWrapper,
                                             const boost::uuids::uuid& uuid) {
    return keepNew<content::SpinnerDataImpl>("data", uuid);
  }
};
using SpinnerNode = gx::zero::Handle<SpinnerNodeImpl>;

struct StateButtonNodeImpl : LumoControlNodeImpl {
  template <typename Self>
  struct BuilderBase : gx::zero::Creator {
    using Creator::Creator;
    gx::zero::Handle<StateButtonNodeImpl> createStateButtonNode(const boost::uuids::uuid& uuid) {
      return create<StateButtonNodeImpl>(uuid);
    }
  };
  content::StateButtonData createIntoStateButtonData(content::StateButtonData::BuilderWrapper,
                                                     const boost::uuids::uuid& uuid) {
    return keepNew<content::StateButtonDataImpl>("data", uuid);
  }
};
using StateButtonNode = gx::zero::Handle<StateButtonNodeImpl>;

struct LumoAppLineNodeImpl : NodeImpl {
  template <typename Self>
  struct BuilderBase : gx::zero::Creator {
    using Creator::Creator;
    gx::zero::Handle<LumoAppLineNodeImpl> createLumoAppLineNode(const boost::uuids::uuid& uuid) {
      return create<LumoAppLineNodeImpl>(uuid);
    }
  };
};
using LumoAppLineNode = gx::zero::Handle<LumoAppLineNodeImpl>;

struct LumoAppIntegratedInlineNodeImpl : NodeImpl {
  template <typename Self>
  struct BuilderBase : gx::zero::Creator {
    using Creator::Creator;
    gx::zero::Handle<LumoAppIntegratedInlineNodeImpl> createLumoAppIntegratedInlineNode(
        const boost::uuids::uuid& uuid) {
      return create<LumoAppIntegratedInlineNodeImpl>(uuid);
    }
  };
  bool setId(const std::u16string& value) { return keep("id", value); }
  bool setLumoTaskData(const content::LumoTaskData& value) { return keep("task", value.told()); }
};
using LumoAppIntegratedInlineNode = gx::zero::Handle<LumoAppIntegratedInlineNodeImpl>;

}  // namespace document::gxzero
