// Components of the embedded runtime: publication, activation, release, and what can go wrong.

#include <gmock/gmock.h>

#include <algorithm>
#include <map>

#include "cppmicroservices/servicecomponent/runtime/ServiceComponentRuntime.hpp"
#include "services.hpp"
#include "support/runtime_host.hpp"

namespace service_runtime_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

using cppmicroservices::Bundle;
using cppmicroservices::service::component::runtime::ServiceComponentRuntime;
namespace dto = cppmicroservices::service::component::runtime::dto;

/// "component: reference it waits for" of all components that are not published.
std::vector<std::string> waiting(Host& host) {
  std::vector<std::string> result;
  const auto runtime = host.service<ServiceComponentRuntime>();
  for (const auto& description : runtime->GetComponentDescriptionDTOs()) {
    for (const auto& configuration : runtime->GetComponentConfigurationDTOs(description)) {
      if (configuration.state != dto::ComponentState::UNSATISFIED_REFERENCE) continue;
      for (const auto& reference : configuration.unsatisfiedReferences) {
        result.push_back(description.name + ": " + reference.name + " " + reference.target);
      }
    }
  }
  return result;
}

TEST(Component, LivesFromFirstUseToStop) {
  Host host;
  Bundle bundle = host.start("plain");
  EXPECT_THAT(takeJournal(), ElementsAre("test_plain: context set"));
  host.service<Greeter>();
  host.service<Greeter>();
  EXPECT_THAT(takeJournal(), ElementsAre("new Plain", "construct Plain", "activate Plain"));
  bundle.Stop();
  EXPECT_THAT(takeJournal(), ElementsAre("deactivate Plain", "delete Plain", "destroy Plain",
                                         "test_plain: context taken away"));
  bundle.Start();
  host.service<Greeter>();
  EXPECT_THAT(takeJournal(), ElementsAre("test_plain: context set", "new Plain", "construct Plain",
                                         "activate Plain"));
  bundle.Uninstall();
  EXPECT_THAT(takeJournal(), ElementsAre("deactivate Plain", "delete Plain", "destroy Plain",
                                         "test_plain: context taken away"));
  EXPECT_THAT(host.takeEvents(), IsEmpty());
}

TEST(Component, ObjectInUseOutlivesItsComponent) {
  Host host;
  Bundle bundle = host.start("plain");
  std::shared_ptr<Greeter> greeter = host.service<Greeter>();
  takeJournal();
  bundle.Stop();
  EXPECT_THAT(takeJournal(),
              ElementsAre("deactivate Plain", "delete Plain", "test_plain: context taken away"));
  EXPECT_EQ(greeter->greet(), "I am Plain");
  greeter.reset();
  EXPECT_THAT(takeJournal(), ElementsAre("destroy Plain"));
}

TEST(Component, UserIsReleasedBeforeWhatItUses) {
  Host host;
  Bundle bundle = host.start("pair");
  host.service<Listener>();
  EXPECT_THAT(takeJournal(),
              ElementsAre("test_pair: context set", "new Wanted", "construct Wanted",
                          "activate Wanted", "new PairListener", "construct listener"));
  bundle.Stop();
  EXPECT_THAT(takeJournal(), ElementsAre("deactivate listener", "delete PairListener",
                                         "destroy listener", "deactivate Wanted", "delete Wanted",
                                         "destroy Wanted", "test_pair: context taken away"));
}

TEST(Component, ComesAndGoesWithTheServiceItRefersTo) {
  Host host;
  host.start("consumer");
  host.start("decoy");
  EXPECT_EQ(host.service<Listener>(), nullptr);
  EXPECT_THAT(waiting(host),
              ElementsAre("service_runtime_test::Consumer: greeter (test_id=provided)"));

  Bundle provider = host.start("provider");
  EXPECT_THAT(waiting(host), IsEmpty());
  EXPECT_EQ(host.service<Listener>()->hear(), "heard: I am Provider");
  const auto first = host.context().GetServiceReference<Listener>();

  takeJournal();
  provider.Stop();
  EXPECT_FALSE(first);
  EXPECT_EQ(host.context().GetService(first), nullptr);
  EXPECT_EQ(host.service<Listener>(), nullptr);
  EXPECT_THAT(takeJournal(),
              ElementsAre("deactivate listener", "delete Consumer", "destroy listener",
                          "deactivate Provider", "delete Provider", "destroy Provider",
                          "test_provider: context taken away"));
  EXPECT_THAT(waiting(host),
              ElementsAre("service_runtime_test::Consumer: greeter (test_id=provided)"));

  provider.Start();
  EXPECT_EQ(host.service<Listener>()->hear(), "heard: I am Provider");
  EXPECT_FALSE(first == host.context().GetServiceReference<Listener>());
  EXPECT_THAT(host.takeEvents(), IsEmpty());
}

TEST(Component, TurnsToAnotherServiceWhenItsOwnGoes) {
  Host host;
  Bundle spare = host.start("spare");
  host.start("consumer");
  EXPECT_EQ(host.service<Listener>()->hear(), "heard: I am Spare");
  Bundle provider = host.start("provider");
  // A static reference stays with its service though a better one has come.
  EXPECT_EQ(host.service<Listener>()->hear(), "heard: I am Spare");
  spare.Stop();
  EXPECT_EQ(host.service<Listener>()->hear(), "heard: I am Provider");
  spare.Start();
  provider.Uninstall();
  EXPECT_EQ(host.service<Listener>()->hear(), "heard: I am Spare");
}

TEST(Component, BestServiceIsBound) {
  Host host;
  host.start("spare");
  host.start("provider");  // of a higher rank
  host.start("consumer");
  EXPECT_EQ(host.service<Listener>()->hear(), "heard: I am Provider");
}

TEST(Component, ContextIsValidUntilTheRelease) {
  Host host;
  Bundle bundle = host.start("curious");
  const auto greeter = host.service<Greeter>();
  ASSERT_TRUE(greeter);
  EXPECT_EQ(greeter->greet(), "no service");
  bundle.Stop();
  try {
    greeter->greet();
    ADD_FAILURE() << "no exception";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "the component's context is no longer valid");
  }
}

TEST(Component, FaultOfOneIsToldAndTheOthersAreServed) {
  Host host;
  Bundle bundle = host.start("faulty");
  EXPECT_THAT(host.takeEvents(),
              ElementsAre("ERROR: bundle test_faulty, component "
                          "service_runtime_test::MissingFunctions: the library does not export "
                          "NewInstance_service_runtime_test_MissingFunctions",
                          "ERROR: bundle test_faulty, component service_runtime_test::Good: "
                          "another component before it has the same name; this one is not served"));

  std::map<std::string, std::vector<std::string>> events;
  std::vector<std::string> served;
  for (const auto& reference : host.context().GetServiceReferences("", "(component.name=*)")) {
    const std::string name = reference.GetProperty("component.name").ToString();
    if (host.context().GetService(reference)) served.push_back(name);
    if (auto sent = host.takeEvents(); !sent.empty()) events.emplace(name, std::move(sent));
  }
  EXPECT_THAT(served,
              ElementsAre("service_runtime_test::ThrowingDeactivate",
                          "service_runtime_test::ThrowingDelete", "service_runtime_test::Good"));
  const std::string prefix = "ERROR: bundle test_faulty, component service_runtime_test::";
  const std::string nullFactory =
      prefix + "NullFactory: making the instance failed: NewInstance_ returned null";
  EXPECT_THAT(
      events,
      ElementsAre(
          Pair("service_runtime_test::BrokenReference",
               ElementsAre(nullFactory, prefix + "BrokenReference: reference greeter: its service "
                                                 "cannot be had")),
          Pair("service_runtime_test::NullFactory", ElementsAre(nullFactory)),
          Pair("service_runtime_test::ThrowingActivate",
               ElementsAre(prefix + "ThrowingActivate: activating the instance failed: not today")),
          Pair("service_runtime_test::ThrowingConstructor",
               ElementsAre(prefix + "ThrowingConstructor: making the instance failed: no room")),
          Pair("service_runtime_test::ThrowingSomething",
               ElementsAre(prefix + "ThrowingSomething: making the instance failed: an exception "
                                    "that is no std::exception")),
          Pair("service_runtime_test::ThrowingTwice",
               ElementsAre(prefix + "ThrowingTwice: making the instance failed: no room; freeing "
                                    "the instance failed: still in use")),
          Pair("service_runtime_test::WrongInterface",
               ElementsAre(prefix + "WrongInterface: asking the instance for its interfaces "
                                    "failed: it does not offer service_runtime_test::Greeter")),
          Pair("service_runtime_test::WrongReference",
               ElementsAre(prefix + "WrongReference: making the instance failed: the constructor "
                                    "takes a reference \"another name\" to "
                                    "service_runtime_test::Greeter, which the manifest does not "
                                    "give"))));

  bundle.Stop();
  EXPECT_THAT(host.takeEvents(),
              ElementsAre("WARNING: bundle test_faulty, component "
                          "service_runtime_test::ThrowingDelete: freeing the instance failed: "
                          "still in use",
                          "WARNING: bundle test_faulty, component "
                          "service_runtime_test::ThrowingDeactivate: deactivating the instance "
                          "failed: not yet"));
  // Whatever was made has been freed: each good instance, and each that failed half-way.
  const auto journal = takeJournal();
  for (const char* name :
       {"Good", "ThrowingActivate", "ThrowingConstructor", "ThrowingDeactivate", "ThrowingDelete",
        "ThrowingSomething", "ThrowingTwice", "WrongInterface", "WrongReference"}) {
    EXPECT_EQ(std::count(journal.begin(), journal.end(), std::string("new ") + name), 1) << name;
    EXPECT_EQ(std::count(journal.begin(), journal.end(), std::string("delete ") + name), 1) << name;
  }
  EXPECT_EQ(std::count(journal.begin(), journal.end(), "construct Good"),
            std::count(journal.begin(), journal.end(), "destroy Good"));
}

TEST(Component, CycleOfReferencesIsTold) {
  Host host;
  host.start("cycle");
  EXPECT_THAT(
      host.takeEvents(),
      ElementsAre("ERROR: bundle test_cycle, component service_runtime_test::RingListener: its "
                  "references lead back to itself: service_runtime_test::RingListener (reference "
                  "greeter) -> service_runtime_test::RingGreeter (reference listener) -> "
                  "service_runtime_test::RingListener",
                  "ERROR: bundle test_cycle, component service_runtime_test::OwnTail: its "
                  "references lead back to itself: service_runtime_test::OwnTail (reference self) "
                  "-> service_runtime_test::OwnTail"));
  EXPECT_THAT(waiting(host), ElementsAre("service_runtime_test::RingListener: greeter (ring=2)",
                                         "service_runtime_test::RingGreeter: listener (ring=1)",
                                         "service_runtime_test::OwnTail: self (ring=3)",
                                         "service_runtime_test::Outside: greeter "));
}

TEST(Component, RuntimeTellsOfTheBundlesAskedFor) {
  Host host;
  const Bundle bundle = host.start("consumer");
  host.start("plain");
  const auto runtime = host.service<ServiceComponentRuntime>();
  EXPECT_EQ(runtime->GetComponentDescriptionDTOs().size(), 2U);
  const auto descriptions = runtime->GetComponentDescriptionDTOs({bundle});
  ASSERT_EQ(descriptions.size(), 1U);
  const dto::ComponentDescriptionDTO& consumer = descriptions.front();
  EXPECT_EQ(consumer.name, "service_runtime_test::Consumer");
  EXPECT_THAT(consumer.serviceInterfaces, ElementsAre("service_runtime_test::Listener"));

  host.start("provider");
  host.service<Listener>();
  const auto configurations = runtime->GetComponentConfigurationDTOs(consumer);
  ASSERT_EQ(configurations.size(), 1U);
  EXPECT_EQ(configurations[0].state, dto::ComponentState::ACTIVE);
  EXPECT_EQ(configurations[0].description.name, consumer.name);
  EXPECT_THAT(runtime->GetComponentConfigurationDTOs({}), IsEmpty());
}

}  // namespace
}  // namespace service_runtime_test
