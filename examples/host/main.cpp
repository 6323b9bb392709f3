// A host in small: starts the service runtime, installs the bundle, builds one node from the JSON
// text on standard input, prints it, and stops. The diagnostic log goes to standard error.

#include <cppmicroservices/Any.h>
#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/Framework.h>
#include <cppmicroservices/FrameworkEvent.h>
#include <cppmicroservices/FrameworkFactory.h>
#include <cppmicroservices/ServiceReference.h>

#include <chrono>
#include <exception>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>

#include "reference_host/export/export.hpp"
#include "reference_host/json/parse.hpp"
#include "reference_host/logging/log_capture.hpp"
#include "tessel/build/json/builders.hpp"

using cppmicroservices::BundleContext;
using document::gxzero::Node;

static void installAndStart(BundleContext context, const std::string& path) {
  for (auto bundle : context.InstallBundles(path)) bundle.Start();
}

/// Builds the value with the published builder that claims it; empty when none does.
template <typename Builder>
static Node buildWith(BundleContext context, const gx::zero::Model& model,
                      const foundation::json::Value& json) {
  for (const auto& reference : context.GetServiceReferences<Builder>()) {
    const auto builder = context.GetService(reference);
    if (builder == nullptr || !builder->canBuild(json)) continue;
    std::cerr << "builder: " << reference.GetProperty("component.name").ToString() << '\n';
    return builder->build(model, json);
  }
  return {};
}

static void importText(BundleContext context, const std::string& text) {
  const foundation::json::Value json = reference_host::json::parse(text);
  const gx::zero::Model model = gx::zero::Model::create();
  Node node = buildWith<tessel::build::json::code::CodeElementBuilder>(context, model, json);
  if (!node) node = buildWith<tessel::build::json::NodeBuilder>(context, model, json);
  if (!node) throw std::runtime_error("no builder is for this");
  std::cout << reference_host::exporting::toJson(node) << '\n';
}

int main() {
  constexpr char kSeparator = std::filesystem::path::preferred_separator == '/' ? ':' : ';';
  const std::string text(std::istreambuf_iterator<char>(std::cin), {});
  const reference_host::logging::LogCapture log;
  auto framework = cppmicroservices::FrameworkFactory().NewFramework();
  framework.Start();
  int status = 1;
  try {
    const BundleContext context = framework.GetBundleContext();
    // Declarative Services where they are a bundle of their own: they read the ones started later.
    std::istringstream first(TESSEL_RUNTIME_BUNDLES);
    for (std::string path; std::getline(first, path, kSeparator);) installAndStart(context, path);
    installAndStart(context, BUNDLE_PATH);
    importText(context, text);
    status = 0;
  } catch (const std::exception& error) {
    std::cerr << "error: " << error.what() << '\n';
  }
  for (const auto& record : log.records()) std::cerr << "log: " << record.text << '\n';
  framework.Stop();
  framework.WaitForStop(std::chrono::milliseconds::zero());
  return status;
}
