#include "support/all_builders.hpp"

#include <memory>

#include "controls/control_builders.hpp"
#include "widgets/task_builders.hpp"

namespace test_support {

using reference_host::importer::NamedBuilder;

const std::vector<BuilderService>& allBuilderServices() {
  namespace controls = tessel::build::json::controls;
  namespace widgets = tessel::build::json::widgets;
  static const std::vector<BuilderService> all = [] {
    const auto task = std::make_shared<widgets::LumoTaskIntegratedInlineNodeBuilderImpl>();
    return std::vector<BuilderService>{
        {"ButtonBuilderImpl", std::make_shared<controls::ButtonBuilderImpl>()},
        {"CheckBoxBuilderImpl", std::make_shared<controls::CheckBoxBuilderImpl>()},
        {"ColorPickerBuilderImpl", std::make_shared<controls::ColorPickerBuilderImpl>()},
        {"ComboboxBuilderImpl", std::make_shared<controls::ComboboxBuilderImpl>()},
        {"DatePickerBuilderImpl", std::make_shared<controls::DatePickerBuilderImpl>()},
        {"EditFieldBuilderImpl", std::make_shared<controls::EditFieldBuilderImpl>()},
        {"FileBrowserBuilderImpl", std::make_shared<controls::FileBrowserBuilderImpl>()},
        {"LumoTaskHeaderBuilderImpl", std::make_shared<widgets::LumoTaskHeaderBuilderImpl>(task)},
        {"LumoTaskIntegratedInlineNodeBuilderImpl", task},
        {"RangeSliderNodeBuilderImpl", std::make_shared<controls::RangeSliderNodeBuilderImpl>()},
        {"SliderNodeBuilderImpl", std::make_shared<controls::SliderNodeBuilderImpl>()},
        {"SpinnerNodeBuilderImpl", std::make_shared<controls::SpinnerNodeBuilderImpl>()},
        {"StateButtonBuilderImpl", std::make_shared<controls::StateButtonBuilderImpl>()}};
  }();
  return all;
}

const std::vector<NamedBuilder>& allBuilders() {
  static const std::vector<NamedBuilder> all = [] {
    std::vector<NamedBuilder> named;
    for (const BuilderService& each : allBuilderServices()) {
      named.emplace_back(each.name, each.service);
    }
    return named;
  }();
  return all;
}

}  // namespace test_support
