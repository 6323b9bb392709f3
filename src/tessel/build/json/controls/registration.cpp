// The functions that the service runtime looks up by name. The manifest lists the components; each
// of them has one row here.

#include <array>
#include <atomic>
#include <memory>
#include <new>
#include <string>
#include <tuple>

#include "controls/control_builders.hpp"
#include "cppmicroservices/GlobalConfig.h"
#include "cppmicroservices/servicecomponent/detail/ComponentInstance.hpp"
#include "cppmicroservices/servicecomponent/detail/ComponentInstanceImpl.hpp"
#include "widgets/task_builders.hpp"

namespace cppmicroservices {
class BundleContextPrivate;
}

namespace {

using cppmicroservices::service::component::detail::ComponentInstance;
using cppmicroservices::service::component::detail::ComponentInstanceImpl;
using tessel::build::json::NodeBuilder;
using tessel::build::json::code::CodeElementBuilder;
namespace controls = tessel::build::json::controls;
namespace widgets = tessel::build::json::widgets;

/// The holder of a component that refers to no other; null when there is no memory for it.
template <typename Impl, typename Interface>
ComponentInstance* newInstance() {
  return new (std::nothrow) ComponentInstanceImpl<Impl, std::tuple<Interface>>();
}

/// The holder of the task header's builder, whose constructor takes the service that the manifest's
/// reference of this name is bound to; null when there is no memory for it.
ComponentInstance* newTaskHeaderInstance() try {
  const std::array<std::string, 1> references{"lumoAppIntegratedInlineNodeBuilder"};
  return new (std::nothrow)
      ComponentInstanceImpl<widgets::LumoTaskHeaderBuilderImpl, std::tuple<NodeBuilder>,
                            std::shared_ptr<NodeBuilder>>(references);
} catch (const std::bad_alloc&) {
  return nullptr;  // the name of the reference takes memory, too
}

// Set by the runtime when it loads the bundle, and read by no builder.
std::atomic<cppmicroservices::BundleContextPrivate*> bundleContext{nullptr};

}  // namespace

// The pair of functions of one component, named after its class with `_` for `::`.
#define TESSEL_EXPORT_COMPONENT(classPath, makeInstance)                                  \
  extern "C" US_ABI_EXPORT ComponentInstance* NewInstance_##classPath() {                 \
    return makeInstance;                                                                  \
  }                                                                                       \
  extern "C" US_ABI_EXPORT void DeleteInstance_##classPath(ComponentInstance* instance) { \
    delete instance;                                                                      \
  }

TESSEL_EXPORT_COMPONENT(tessel_build_json_controls_ButtonBuilderImpl,
                        (newInstance<controls::ButtonBuilderImpl, CodeElementBuilder>()))
TESSEL_EXPORT_COMPONENT(tessel_build_json_controls_CheckBoxBuilderImpl,
                        (newInstance<controls::CheckBoxBuilderImpl, CodeElementBuilder>()))
TESSEL_EXPORT_COMPONENT(tessel_build_json_controls_ColorPickerBuilderImpl,
                        (newInstance<controls::ColorPickerBuilderImpl, CodeElementBuilder>()))
TESSEL_EXPORT_COMPONENT(tessel_build_json_controls_ComboboxBuilderImpl,
                        (newInstance<controls::ComboboxBuilderImpl, CodeElementBuilder>()))
TESSEL_EXPORT_COMPONENT(tessel_build_json_controls_DatePickerBuilderImpl,
                        (newInstance<controls::DatePickerBuilderImpl, CodeElementBuilder>()))
TESSEL_EXPORT_COMPONENT(tessel_build_json_controls_EditFieldBuilderImpl,
                        (newInstance<controls::EditFieldBuilderImpl, CodeElementBuilder>()))
TESSEL_EXPORT_COMPONENT(tessel_build_json_controls_FileBrowserBuilderImpl,
                        (newInstance<controls::FileBrowserBuilderImpl, CodeElementBuilder>()))
TESSEL_EXPORT_COMPONENT(tessel_build_json_widgets_LumoTaskHeaderBuilderImpl,
                        newTaskHeaderInstance())
TESSEL_EXPORT_COMPONENT(
    tessel_build_json_widgets_LumoTaskIntegratedInlineNodeBuilderImpl,
    (newInstance<widgets::LumoTaskIntegratedInlineNodeBuilderImpl, NodeBuilder>()))
TESSEL_EXPORT_COMPONENT(tessel_build_json_controls_RangeSliderNodeBuilderImpl,
                        (newInstance<controls::RangeSliderNodeBuilderImpl, CodeElementBuilder>()))
TESSEL_EXPORT_COMPONENT(tessel_build_json_controls_SliderNodeBuilderImpl,
                        (newInstance<controls::SliderNodeBuilderImpl, CodeElementBuilder>()))
TESSEL_EXPORT_COMPONENT(tessel_build_json_controls_SpinnerNodeBuilderImpl,
                        (newInstance<controls::SpinnerNodeBuilderImpl, CodeElementBuilder>()))
TESSEL_EXPORT_COMPONENT(tessel_build_json_controls_StateButtonBuilderImpl,
                        (newInstance<controls::StateButtonBuilderImpl, CodeElementBuilder>()))

#undef TESSEL_EXPORT_COMPONENT

extern "C" US_ABI_EXPORT void
_us_set_bundle_context_instance_com_quorvex_tessel_build_json_controls(
    cppmicroservices::BundleContextPrivate* context) {
  bundleContext.exchange(context);
}
