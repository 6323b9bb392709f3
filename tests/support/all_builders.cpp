#include "support/all_builders.hpp"

#include <stdexcept>

#include "support/manifest_builders.hpp"

namespace test_support {

namespace {

using reference_host::importer::NamedBuilder;

std::vector<BuilderService> makeServices() {
  std::vector<BuilderService> services;
  makeBuilders([&services](const std::string& name, const auto& service) {
    services.push_back({name, service});
  });
  return services;
}

}  // namespace

const std::vector<BuilderService>& allBuilderServices() {
  static const std::vector<BuilderService> all = makeServices();
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

const NamedBuilder& builderOf(const std::string& name) {
  for (const NamedBuilder& builder : allBuilders()) {
    if (builder.name() == name) return builder;
  }
  throw std::invalid_argument("there is no builder " + name);
}

}  // namespace test_support
