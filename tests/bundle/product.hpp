#pragma once

/// @file
/// What the product publishes, and the way to it through a service runtime.

#include <algorithm>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include "document/gxzero.hpp"
#include "reference_host/export/export.hpp"
#include "reference_host/importer/importer.hpp"
#include "service_runtime/host.hpp"
#include "support/json.hpp"
#include "tessel/build/json/builders.hpp"

namespace bundle_test {

using service_runtime_test::Host;
using tessel::build::json::NodeBuilder;
using tessel::build::json::code::CodeElementBuilder;

const std::string kControlInterface = "tessel::build::json::code::CodeElementBuilder";
const std::string kNodeInterface = "tessel::build::json::NodeBuilder";
const std::string kControls = "tessel::build::json::controls::";
const std::string kHeader = "tessel::build::json::widgets::LumoTaskHeaderBuilderImpl";
const std::string kInline = "tessel::build::json::widgets::LumoTaskIntegratedInlineNodeBuilderImpl";

/// A service as the registry describes it.
struct Service {
  std::string component;
  std::string interface;
  std::string testId;  ///< empty when it has none

  friend bool operator==(const Service& left, const Service& right) {
    return std::tie(left.component, left.interface, left.testId) ==
           std::tie(right.component, right.interface, right.testId);
  }
  friend std::ostream& operator<<(std::ostream& stream, const Service& service) {
    return stream << service.component << " as " << service.interface << " with \""
                  << service.testId << '"';
  }
};

/// A component of the product, and how it is known by its behaviour.
struct Component {
  Service service;
  std::string recognitionText;
  std::string claims;     ///< an object that it alone claims
  std::string nodeClass;  ///< of what it builds from that object
};

/// All of them, in the manifest's order.
inline const std::vector<Component>& productComponents() {
  const auto control = [](const std::string& name, const std::string& subject,
                          const std::string& claims, const std::string& nodeClass) {
    return Component{{kControls + name, kControlInterface, ""},
                     "Checking if can build " + subject,
                     claims,
                     "document::gxzero::" + nodeClass};
  };
  const auto generic = [](const std::string& type) {
    return R"({"className":"LumoControlNode","context":{"type":")" + type + R"(","data":{}}})";
  };
  const auto named = [](const std::string& name, const std::string& data) {
    return R"({"className":")" + name + R"(","context":{"data":)" + data + "}}";
  };
  static const std::vector<Component> components = {
      control("ButtonBuilderImpl", "Button", generic("button"), "ButtonNode"),
      control("CheckBoxBuilderImpl", "CheckBox", generic("checkBox"), "CheckBoxNode"),
      control("ColorPickerBuilderImpl", "ColorPicker",
              named("ColorPickerControlNode", R"({"colorFormat":"hex","defaultValue":"#000"})"),
              "ColorPickerNode"),
      control("ComboboxBuilderImpl", "ComboBox", generic("comboBox"), "ComboboxNode"),
      control("DatePickerBuilderImpl", "DatePicker",
              named("DatePickerControlNode", R"({"displayFormat":"d","defaultValue":"1"})"),
              "DatePickerNode"),
      // The edit field's builder has the combo box's text.
      control(
          "EditFieldBuilderImpl", "ComboBox",
          R"({"className":"LumoControlNode","context":{"type":"editField",)"
          R"("data":{"valueType":"String","defaultValue":"a","defaultValueLinkedVariable":"b"}}})",
          "EditFieldNode"),
      control("FileBrowserBuilderImpl", "FileBrowser",
              named("FileBrowserControlNode", R"({"browserType":"file","defaultValue":"a"})"),
              "FileBrowserNode"),
      {{kHeader, kNodeInterface, "LumoTaskHeaderBuilderImpl"},
       "Checking if can build LumoAppLineNode",
       R"({"className":"LumoAppLineNode","children":[]})",
       "document::gxzero::LumoAppLineNode"},
      {{kInline, kNodeInterface, "LumoTaskIntegratedInlineNodeBuilderImpl"},
       "Checking if can build LumoAppIntegratedInline",
       R"({"className":"LumoAppIntegratedInlineNode"})",
       "document::gxzero::LumoAppIntegratedInlineNode"},
      control("RangeSliderNodeBuilderImpl", "RangeSliderNode",
              named("RangeSliderControlNode", "{}"), "RangeSliderNode"),
      control("SliderNodeBuilderImpl", "SliderNode", generic("slider"), "SliderNode"),
      control("SpinnerNodeBuilderImpl", "SpinnerNode", named("SpinnerControlNode", "{}"),
              "SpinnerNode"),
      control("StateButtonBuilderImpl", "StateButton", named("StateButtonControlNode", "{}"),
              "StateButtonNode"),
  };
  return components;
}

inline std::vector<Service> productServices() {
  std::vector<Service> services;
  for (const Component& component : productComponents()) services.push_back(component.service);
  return services;
}

/// The services that a bundle publishes through components, in the order of `component.id`.
inline std::vector<cppmicroservices::ServiceReferenceU> referencesOf(
    Host& host, const cppmicroservices::Bundle& bundle) {
  using cppmicroservices::any_cast;
  std::vector<cppmicroservices::ServiceReferenceU> references;
  for (const auto& reference : host.context().GetServiceReferences("", "(component.name=*)")) {
    if (reference.GetBundle() == bundle) references.push_back(reference);
  }
  std::sort(references.begin(), references.end(), [](const auto& left, const auto& right) {
    return any_cast<unsigned long>(left.GetProperty("component.id")) <
           any_cast<unsigned long>(right.GetProperty("component.id"));
  });
  return references;
}

inline std::vector<Service> servicesOf(Host& host, const cppmicroservices::Bundle& bundle) {
  using cppmicroservices::any_cast;
  std::vector<Service> services;
  for (const auto& reference : referencesOf(host, bundle)) {
    const auto interfaces =
        any_cast<std::vector<std::string>>(reference.GetProperty("objectclass"));
    std::string offered;
    for (const std::string& interface : interfaces) {
      // What some runtimes add to every service that is made when it is asked for.
      if (interface == "org.cppmicroservices.factory") continue;
      offered += (offered.empty() ? "" : ", ") + interface;
    }
    const auto testId = reference.GetProperty("test_id");
    services.push_back({any_cast<std::string>(reference.GetProperty("component.name")), offered,
                        testId.Empty() ? "" : any_cast<std::string>(testId)});
  }
  return services;
}

inline cppmicroservices::Bundle installProduct(Host& host) {
  return host.context().InstallBundles(BUNDLE).back();
}

inline cppmicroservices::Bundle startProduct(Host& host) {
  auto bundle = installProduct(host);
  bundle.Start();
  return bundle;
}

/// A component's published service; null when there is none.
template <class Interface>
std::shared_ptr<Interface> serviceOf(Host& host, const std::string& component) {
  return host.service<Interface>("(component.name=" + component + ")");
}

/// The same for one that has to be there.
/// @throws std::runtime_error when it is not.
template <class Interface>
std::shared_ptr<Interface> presentServiceOf(Host& host, const std::string& component) {
  auto service = serviceOf<Interface>(host, component);
  if (!service) throw std::runtime_error(component + " is not published or cannot be had");
  return service;
}

/// The product's builders, in the manifest's order.
inline std::vector<reference_host::importer::NamedBuilder> productBuilders(Host& host) {
  std::vector<reference_host::importer::NamedBuilder> builders;
  for (const Service& service : productServices()) {
    if (service.interface == kNodeInterface) {
      builders.emplace_back(service.component,
                            presentServiceOf<NodeBuilder>(host, service.component));
    } else {
      builders.emplace_back(service.component,
                            presentServiceOf<CodeElementBuilder>(host, service.component));
    }
  }
  return builders;
}

/// What a builder makes of JSON text, as exported.
template <class Builder>
std::string built(const Builder& builder, const std::string& json) {
  const auto model = gx::zero::Model::create();
  return reference_host::exporting::toJson(builder.build(model, test_support::json(json)));
}

const std::string kEmptyInlineNode =
    R"({"class":"document::gxzero::LumoAppIntegratedInlineNode","id":"","lumoTaskData":)"
    R"({"class":"lumocode::contentmodel::gxzero::LumoTaskData","taskId":"","appIdentifier":"",)"
    R"("view":"","collapsed":"","appVariables":"","appVariablesUserMap":"","executionModel":"",)"
    R"("appState":"","autoRun":"","text":"","numCodeLines":0}})";

/// A header line with one child, as JSON and as exported with the child given.
const std::string kTask = R"({"className":"LumoAppLineNode","anchorId":"1",)"
                          R"("children":[{"className":"LumoAppIntegratedInlineNode"}]})";
inline std::string builtTask(const std::string& child) {
  return R"({"class":"document::gxzero::LumoAppLineNode","anchorId":"M_1","children":[)" + child +
         "]}";
}

}  // namespace bundle_test
