#pragma once

/// @file
/// What the product publishes, and the way to it through a service runtime.

#include <algorithm>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
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

/// The component that builds a kind.
inline std::string componentOf(const contract::Kind& kind) {
  return (contract::isControl(kind) ? kControls : kWidgets) + kind.builder;
}

/// A service as the registry describes it.
inline std::string described(const std::string& component, const std::string& interface,
                             const std::string& testId) {
  return component + " as " + interface + (testId.empty() ? "" : " with the test_id " + testId);
}

/// All services of the product but those of some components, in the manifest's order.
inline std::vector<std::string> productServices(const std::set<std::string>& without = {}) {
  std::vector<std::string> services;
  for (const contract::Kind& kind : contract::kinds()) {
    const std::string component = componentOf(kind);
    if (without.count(component) != 0) continue;
    services.push_back(contract::isControl(kind)
                           ? described(component, kControlInterface, "")
                           : described(component, kNodeInterface, kind.builder));
  }
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

inline std::vector<std::string> servicesOf(Host& host, const cppmicroservices::Bundle& bundle) {
  using cppmicroservices::any_cast;
  std::vector<std::string> services;
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
    services.push_back(described(any_cast<std::string>(reference.GetProperty("component.name")),
                                 offered, testId.Empty() ? "" : any_cast<std::string>(testId)));
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
  for (const contract::Kind& kind : contract::kinds()) {
    const std::string component = componentOf(kind);
    if (contract::isControl(kind)) {
      builders.emplace_back(component, presentServiceOf<CodeElementBuilder>(host, component));
    } else {
      builders.emplace_back(component, presentServiceOf<NodeBuilder>(host, component));
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
