#include "fuzz/builders.hpp"

#include <memory>

#include "controls/control_builders.hpp"
#include "widgets/task_builders.hpp"

namespace fuzz {

const std::vector<reference_host::importer::NamedBuilder>& allBuilders() {
  namespace controls = tessel::build::json::controls;
  namespace widgets = tessel::build::json::widgets;
  using Control = std::shared_ptr<const tessel::build::json::code::CodeElementBuilder>;
  using Widget = std::shared_ptr<const tessel::build::json::NodeBuilder>;

  static const auto builders = [] {
    const auto inlineNode = std::make_shared<widgets::LumoTaskIntegratedInlineNodeBuilderImpl>();
    return std::vector<reference_host::importer::NamedBuilder>{
        {"ButtonBuilderImpl", Control(std::make_shared<controls::ButtonBuilderImpl>())},
        {"CheckBoxBuilderImpl", Control(std::make_shared<controls::CheckBoxBuilderImpl>())},
        {"ColorPickerBuilderImpl", Control(std::make_shared<controls::ColorPickerBuilderImpl>())},
        {"ComboboxBuilderImpl", Control(std::make_shared<controls::ComboboxBuilderImpl>())},
        {"DatePickerBuilderImpl", Control(std::make_shared<controls::DatePickerBuilderImpl>())},
        {"EditFieldBuilderImpl", Control(std::make_shared<controls::EditFieldBuilderImpl>())},
        {"FileBrowserBuilderImpl", Control(std::make_shared<controls::FileBrowserBuilderImpl>())},
        {"LumoTaskHeaderBuilderImpl",
         Widget(std::make_shared<widgets::LumoTaskHeaderBuilderImpl>(inlineNode))},
        {"LumoTaskIntegratedInlineNodeBuilderImpl", Widget(inlineNode)},
        {"RangeSliderNodeBuilderImpl",
         Control(std::make_shared<controls::RangeSliderNodeBuilderImpl>())},
        {"SliderNodeBuilderImpl", Control(std::make_shared<controls::SliderNodeBuilderImpl>())},
        {"SpinnerNodeBuilderImpl", Control(std::make_shared<controls::SpinnerNodeBuilderImpl>())},
        {"StateButtonBuilderImpl", Control(std::make_shared<controls::StateButtonBuilderImpl>())},
    };
  }();
  return builders;
}

}  // namespace fuzz
