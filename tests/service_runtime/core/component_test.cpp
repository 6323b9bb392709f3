// Components of the embedded runtime: publication, activation, release, and what can go wrong.

#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <stdexcept>

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
  EXPECT_THAT(takeJournal(), ElementsAre("new", "construct Plain", "activate Plain"));
  bundle.Stop();
  EXPECT_THAT(takeJournal(), ElementsAre("deactivate Plain", "delete", "destroy Plain",
                                         "test_plain: context taken away"));
  bundle.Start();
  EXPECT_EQ(host.service<Greeter>()->greet(), "I am Plain");
  EXPECT_THAT(host.takeEvents(), IsEmpty());
}

TEST(Component, UserIsReleasedBeforeWhatItUses) {
  Host host;
  Bundle bundle = host.start("pair");
  host.service<Listener>();
  EXPECT_THAT(takeJournal(), ElementsAre("test_pair: context set", "new", "construct Provider",
                                         "activate Provider", "new", "construct Consumer"));
  bundle.Stop();
  EXPECT_THAT(takeJournal(), ElementsAre("deactivate Consumer", "delete", "destroy Consumer",
                                         "deactivate Provider", "delete", "destroy Provider",
                                         "test_pair: context taken away"));
}

TEST(Component, ComesAndGoesWithTheServiceItRefersTo) {
  Host host;
  host.start("consumer");
  host.start("plain");
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
  EXPECT_THAT(takeJournal(), ElementsAre("deactivate Consumer", "delete", "destroy Consumer",
                                         "deactivate Provider", "delete", "destroy Provider",
                                         "test_provider: context taken away"));
  EXPECT_THAT(waiting(host),
              ElementsAre("service_runtime_test::Consumer: greeter (test_id=provided)"));

  provider.Start();
  EXPECT_EQ(host.service<Listener>()->hear(), "heard: I am Provider");
  EXPECT_FALSE(first == host.context().GetServiceReference<Listener>());
  EXPECT_THAT(host.takeEvents(), IsEmpty());
}

TEST(Component, KeepsItsServiceUntilThatGoesAndThenTakesTheBest) {
  Host host;
  Bundle spare = host.start("spare");
  Bundle consumer = host.start("consumer");
  EXPECT_EQ(host.service<Listener>()->hear(), "heard: I am Spare");
  Bundle provider = host.start("provider");  // of a higher rank
  EXPECT_EQ(host.service<Listener>()->hear(), "heard: I am Spare");
  consumer.Stop();
  consumer.Start();
  EXPECT_EQ(host.service<Listener>()->hear(), "heard: I am Provider");
  provider.Stop();
  EXPECT_EQ(host.service<Listener>()->hear(), "heard: I am Spare");
  provider.Start();
  spare.Uninstall();
  EXPECT_EQ(host.service<Listener>()->hear(), "heard: I am Provider");
}

TEST(Component, ContextIsValidUntilTheRelease) {
  Host host;
  Bundle bundle = host.start("spare");
  const auto greeter = host.service<Greeter>();
  ASSERT_TRUE(greeter);
  EXPECT_EQ(greeter->greet(), "I am Spare");
  bundle.Stop();
  try {
    greeter->greet();
    ADD_FAILURE() << "no exception";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "the component's context is no longer valid");
  }
}

struct FaultRow {
  std::vector<std::string> entries;  ///< of the journal, at which the bundle's code throws
  bool served;
  std::string event;
};

TEST(Component, FaultOfAStepIsToldAndLeavesNothingBehind) {
  const std::string label = ": bundle test_plain, component service_runtime_test::Plain: ";
  const FaultRow rows[] = {
      {{"construct Plain"}, false, "ERROR" + label + "making the instance failed: no luck"},
      {{"activate Plain"}, false, "ERROR" + label + "activating the instance failed: no luck"},
      {{"construct Plain", "delete"},
       false,
       "ERROR" + label +
           "making the instance failed: no luck; freeing the instance failed: "
           "no luck"},
      {{"deactivate Plain"}, true, "WARNING" + label + "deactivating the instance failed: no luck"},
      {{"delete"}, true, "WARNING" + label + "freeing the instance failed: no luck"}};
  for (const FaultRow& row : rows) {
    SCOPED_TRACE(row.entries.front());
    Host host;
    Bundle bundle = host.start("plain");
    {
      const HookGuard hook([&row](const std::string& entry) {
        if (std::count(row.entries.begin(), row.entries.end(), entry) != 0) {
          throw std::runtime_error("no luck");
        }
      });
      EXPECT_EQ(host.service<Greeter>() != nullptr, row.served);
      bundle.Stop();
    }
    EXPECT_THAT(host.takeEvents(), ElementsAre(row.event));
    const auto journal = takeJournal();
    EXPECT_EQ(std::count(journal.begin(), journal.end(), "new"), 1);
    EXPECT_EQ(std::count(journal.begin(), journal.end(), "delete"), 1);
  }
}

TEST(Component, FaultOfOneIsToldAndTheOthersAreServed) {
  Host host;
  host.start("faulty");
  const std::string prefix = "ERROR: bundle test_faulty, component service_runtime_test::";
  EXPECT_THAT(host.takeEvents(),
              ElementsAre(prefix + "MissingFunctions: the library does not export "
                                   "NewInstance_service_runtime_test_MissingFunctions",
                          prefix + "Good: another component before it has the same name; this "
                                   "one is not served",
                          prefix + "RingListener: its references lead back to itself: "
                                   "service_runtime_test::RingListener (reference greeter) -> "
                                   "service_runtime_test::RingGreeter (reference listener) -> "
                                   "service_runtime_test::RingListener"));
  EXPECT_THAT(waiting(host), ElementsAre("service_runtime_test::RingListener: greeter (ring=2)",
                                         "service_runtime_test::RingGreeter: listener (ring=1)"));

  std::map<std::string, std::vector<std::string>> events;
  std::vector<std::string> served;
  for (const auto& reference : host.context().GetServiceReferences("", "(component.name=*)")) {
    const std::string name = reference.GetProperty("component.name").ToString();
    if (host.context().GetService(reference)) served.push_back(name);
    if (auto sent = host.takeEvents(); !sent.empty()) events.emplace(name, std::move(sent));
  }
  EXPECT_THAT(served, ElementsAre("service_runtime_test::Good"));
  const std::string nullFactory =
      prefix + "NullFactory: making the instance failed: NewInstance_ returned null";
  EXPECT_THAT(
      events,
      ElementsAre(
          Pair("service_runtime_test::BrokenReference",
               ElementsAre(nullFactory, prefix + "BrokenReference: reference greeter: its service "
                                                 "cannot be had")),
          Pair("service_runtime_test::NullFactory", ElementsAre(nullFactory)),
          Pair("service_runtime_test::WrongInterface",
               ElementsAre(prefix + "WrongInterface: asking the instance for its interfaces "
                                    "failed: it does not offer service_runtime_test::Greeter")),
          Pair("service_runtime_test::WrongReference",
               ElementsAre(prefix + "WrongReference: making the instance failed: the constructor "
                                    "takes a reference \"another name\" to "
                                    "service_runtime_test::Greeter, which the manifest does not "
                                    "give"))));
}

}  // namespace
}  // namespace service_runtime_test
