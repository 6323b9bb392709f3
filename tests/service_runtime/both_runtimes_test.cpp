// What a bundle and a host program rely on, whichever runtime they are built for.

#include <gmock/gmock.h>

#include <algorithm>
#include <stdexcept>

#include "cppmicroservices/AnyMap.h"
#include "cppmicroservices/servicecomponent/runtime/ServiceComponentRuntime.hpp"
#include "services.hpp"
#include "support/runtime_host.hpp"

namespace service_runtime_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using cppmicroservices::Any;
using cppmicroservices::any_cast;
using cppmicroservices::AnyMap;
using cppmicroservices::Bundle;
using cppmicroservices::service::component::runtime::ServiceComponentRuntime;
namespace dto = cppmicroservices::service::component::runtime::dto;

TEST(BothRuntimes, BundleTellsWhatItIs) {
  Host host;
  Bundle bundle = host.install("plain");
  EXPECT_EQ(bundle.GetSymbolicName(), "test_plain");
  EXPECT_EQ(bundle.GetState(), Bundle::STATE_INSTALLED);
  EXPECT_FALSE(bundle.GetBundleContext());
  bundle.Start();
  EXPECT_EQ(bundle.GetState(), Bundle::STATE_ACTIVE);
  EXPECT_TRUE(bundle.GetBundleContext());
  bundle.Stop();
  EXPECT_EQ(bundle.GetState(), Bundle::STATE_RESOLVED);
  bundle.Uninstall();
  EXPECT_EQ(bundle.GetState(), Bundle::STATE_UNINSTALLED);
  EXPECT_THROW(bundle.Start(), std::logic_error);
}

TEST(BothRuntimes, ServiceCarriesItsProperties) {
  Host host;
  const Bundle bundle = host.start("plain");
  const auto reference = host.context().GetServiceReference<Greeter>();
  ASSERT_TRUE(reference);
  EXPECT_EQ(reference.GetBundle(), bundle);
  EXPECT_EQ(reference.GetInterfaceId(), "service_runtime_test::Greeter");
  EXPECT_EQ(any_cast<std::string>(reference.GetProperty("text")), "words");
  EXPECT_EQ(any_cast<int>(reference.GetProperty("integer")), 7);
  EXPECT_EQ(any_cast<double>(reference.GetProperty("number")), 2.5);
  EXPECT_EQ(any_cast<bool>(reference.GetProperty("FLAG")), true);
  const Any list = reference.GetProperty("list");
  const auto values = any_cast<std::vector<Any>>(list);
  ASSERT_EQ(values.size(), 3U);
  EXPECT_EQ(any_cast<std::string>(values[0]), "a");
  EXPECT_EQ(any_cast<int>(values[1]), 1);
  EXPECT_EQ(any_cast<bool>(values[2]), false);
  const Any object = reference.GetProperty("object");
  const auto inner = any_cast<AnyMap>(any_cast<AnyMap>(object).at("inner"));
  EXPECT_EQ(any_cast<std::string>(inner.at("deep")), "x");
  EXPECT_EQ(any_cast<std::string>(reference.GetProperty("component.name")),
            "service_runtime_test::Plain");
  EXPECT_NO_THROW(any_cast<unsigned long>(reference.GetProperty("component.id")));
  EXPECT_NO_THROW(any_cast<long>(reference.GetProperty("service.id")));
  const Any interfaces = reference.GetProperty("objectclass");
  EXPECT_THAT(any_cast<std::vector<std::string>>(interfaces),
              ::testing::Contains("service_runtime_test::Greeter"));
  EXPECT_TRUE(reference.GetProperty("absent").Empty());
}

TEST(BothRuntimes, InstanceIsMadeWhenItsServiceIsFirstAskedFor) {
  Host host;
  Bundle bundle = host.start("plain");
  const auto reference = host.context().GetServiceReference<Greeter>();
  const auto beforeUse = takeJournal();
  EXPECT_EQ(std::count(beforeUse.begin(), beforeUse.end(), "construct Plain"), 0);

  std::shared_ptr<Greeter> greeter = host.context().GetService(reference);
  ASSERT_TRUE(greeter);
  EXPECT_EQ(greeter->greet(), "I am Plain");
  EXPECT_EQ(host.context().GetService(reference), greeter);
  EXPECT_THAT(takeJournal(), ::testing::IsSupersetOf({"new Plain", "construct Plain"}));
  greeter.reset();

  bundle.Stop();
  EXPECT_FALSE(reference);
  EXPECT_THAT(takeJournal(),
              ::testing::IsSupersetOf({"deactivate Plain", "destroy Plain", "delete Plain"}));
  bundle.Start();
  EXPECT_EQ(host.service<Greeter>()->greet(), "I am Plain");
}

TEST(BothRuntimes, ReferenceIsBoundByItsTargetNotByRank) {
  Host host;
  host.start("pair");
  EXPECT_EQ(host.service<Greeter>()->greet(), "I am Unwanted");
  EXPECT_EQ(host.service<Listener>()->hear(), "heard: I am Wanted");
  EXPECT_EQ(host.service<Greeter>("(test_id=wanted)")->greet(), "I am Wanted");
  EXPECT_EQ(host.service<Greeter>("(test_id=nobody)"), nullptr);
  EXPECT_THROW(host.context().GetServiceReferences<Greeter>("(test_id=wanted"),
               std::invalid_argument);
  EXPECT_THAT(host.takeEvents(), IsEmpty());
}

TEST(BothRuntimes, ComponentNumbersFollowTheManifest) {
  Host host;
  host.start("pair");
  std::vector<std::pair<unsigned long, std::string>> components;
  for (const auto& reference : host.context().GetServiceReferences("", "(component.name=*)")) {
    components.emplace_back(any_cast<unsigned long>(reference.GetProperty("component.id")),
                            any_cast<std::string>(reference.GetProperty("component.name")));
  }
  std::sort(components.begin(), components.end());
  std::vector<std::string> names;
  for (const auto& [id, name] : components) names.push_back(name);
  EXPECT_THAT(names, ElementsAre("service_runtime_test::PairListener",
                                 "service_runtime_test::Unwanted", "service_runtime_test::Wanted"));
}

TEST(BothRuntimes, RuntimeTellsTheStateOfComponents) {
  Host host;
  host.start("pair");
  const auto runtime = host.service<ServiceComponentRuntime>();
  ASSERT_TRUE(runtime);
  const auto descriptions = runtime->GetComponentDescriptionDTOs();
  ASSERT_EQ(descriptions.size(), 3U);
  for (const auto& description : descriptions) {
    const auto configurations = runtime->GetComponentConfigurationDTOs(description);
    ASSERT_EQ(configurations.size(), 1U);
    EXPECT_EQ(configurations.front().state, dto::ComponentState::SATISFIED);
    EXPECT_THAT(configurations.front().unsatisfiedReferences, IsEmpty());
    if (description.name != "service_runtime_test::PairListener") continue;
    ASSERT_EQ(description.references.size(), 1U);
    EXPECT_EQ(description.references.front().name, "greeter");
    EXPECT_EQ(description.references.front().interfaceName, "service_runtime_test::Greeter");
    EXPECT_EQ(description.references.front().target, "(test_id=wanted)");
  }
}

}  // namespace
}  // namespace service_runtime_test
