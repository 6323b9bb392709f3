#pragma once

/// @file
/// What the product publishes, and the way to it through a service runtime.

#include <algorithm>
#include <cstddef>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include "contract/kinds.hpp"
#include "document/gxzero.hpp"
#include "reference_host/export/export.hpp"
#include "reference_host/importer/importer.hpp"
#include "support/json.hpp"
#include "support/runtime_host.hpp"
#include "tessel/build/json/builders.hpp"

namespace bundle_test {

using service_runtime_test::Host;
using tessel::build::json::NodeBuilder;
using tessel::build::json::code::CodeElementBuilder;

const std::string kControlInterface = "tessel::build::json::code::CodeElementBuilder";
const std::string kNodeInterface = "tessel::build::json::NodeBuilder";
const std::string kControls = "tessel::build::json::controls::";
const std::string kWidgets = "tessel::build::json::widgets::";
const std::string kHeader = kWidgets + "LumoTaskHeaderBuilderImpl";
const std::string kInline = kWidgets + "LumoTaskIntegratedInlineNodeBuilderImpl";

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

/// A component of the product, and the kind that it builds.
struct Component {
  Service service;
  const contract::Kind* kind;
};

/// All of them, in the manifest's order.
inline const std::vector<Component>& productComponents() {
  static const std::vector<Component> components = [] {
    std::vector<Component> all;
    for (const contract::Kind& kind : contract::kinds()) {
      if (contract::isControl(kind)) {
        all.push_back({{kControls + kind.builder, kControlInterface, ""}, &kind});
      } else {
        all.push_back({{kWidgets + kind.builder, kNodeInterface, kind.builder}, &kind});
      }
    }
    return all;
  }();
  return components;
}

/// How many of them offer an interface.
inline std::size_t countOf(const std::string& interface) {
  std::size_t count = 0;
  for (const Component& component : productComponents()) {
    count += component.service.interface == interface ? 1U : 0U;
  }
  return count;
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
