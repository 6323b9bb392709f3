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
using ::testing::SizeIs;

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

TEST(BothRuntimes, ReferenceIsBoundByItsTargetNotByRank) {
  Host host;
  host.start("pair");
  EXPECT_EQ(host.service<Greeter>()->greet(), "I am Plain");
  EXPECT_EQ(host.service<Listener>()->hear(), "heard: I am Provider");
  EXPECT_EQ(host.service<Greeter>("(test_id=wanted)")->greet(), "I am Provider");
  EXPECT_EQ(host.service<Greeter>("(test_id=nobody)"), nullptr);
  EXPECT_THROW(host.context().GetServiceReferences<Greeter>("(test_id=wanted"),
               std::invalid_argument);
  EXPECT_THAT(host.takeEvents(), IsEmpty());
}

TEST(BothRuntimes, RuntimeTellsOfTheComponentsOfABundle) {
  Host host;
  const Bundle bundle = host.start("pair");
  host.start("plain");
  const auto runtime = host.service<ServiceComponentRuntime>();
  ASSERT_TRUE(runtime);
  EXPECT_THAT(runtime->GetComponentDescriptionDTOs(), SizeIs(4));
  const auto descriptions = runtime->GetComponentDescriptionDTOs({bundle});
  ASSERT_THAT(descriptions, SizeIs(3));
  for (const auto& description : descriptions) {
    const auto configurations = runtime->GetComponentConfigurationDTOs(description);
    ASSERT_THAT(configurations, SizeIs(1));
    EXPECT_EQ(configurations.front().description.name, description.name);
    EXPECT_EQ(configurations.front().state, dto::ComponentState::SATISFIED);
    EXPECT_THAT(configurations.front().unsatisfiedReferences, IsEmpty());
  }

  const auto consumer =
      std::find_if(descriptions.begin(), descriptions.end(),
                   [](const auto& each) { return each.name == "service_runtime_test::Consumer"; });
  ASSERT_NE(consumer, descriptions.end());
  EXPECT_THAT(consumer->serviceInterfaces, ElementsAre("service_runtime_test::Listener"));
  ASSERT_THAT(consumer->references, SizeIs(1));
  EXPECT_EQ(consumer->references.front().name, "greeter");
  EXPECT_EQ(consumer->references.front().interfaceName, "service_runtime_test::Greeter");
  EXPECT_EQ(consumer->references.front().target, "(test_id=wanted)");
  host.service<Listener>();
  EXPECT_EQ(runtime->GetComponentConfigurationDTOs(*consumer).front().state,
            dto::ComponentState::ACTIVE);
}

}  // namespace
}  // namespace service_runtime_test
