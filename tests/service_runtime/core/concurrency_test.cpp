// The embedded framework used by several threads, and by a bundle's code while the framework calls
// it.

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <future>
#include <stdexcept>
#include <thread>

#include "services.hpp"
#include "support/runtime_host.hpp"

namespace service_runtime_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using cppmicroservices::Bundle;

/// Lets threads wait until something has happened, which happens once.
class Signal {
 public:
  void set() { promise_.set_value(); }
  void wait() const { happened_.wait(); }

 private:
  std::promise<void> promise_;
  const std::shared_future<void> happened_{promise_.get_future()};
};

TEST(Reentrancy, ServiceAskedForByItsOwnConstructorIsRefused) {
  Host host;
  host.start("plain");
  std::shared_ptr<Greeter> inner;
  {
    const HookGuard hook([&](const std::string& entry) {
      if (entry == "construct Plain") inner = host.service<Greeter>();
    });
    EXPECT_EQ(host.service<Greeter>()->greet(), "I am Plain");
  }
  EXPECT_EQ(inner, nullptr);
  EXPECT_THAT(host.takeEvents(),
              ElementsAre("ERROR: bundle test_plain, component "
                          "service_runtime_test::Plain: its "
                          "service is asked for by what its instance is waiting for"));
}

TEST(Reentrancy, BundleStoppedByAConstructorIsStopped) {
  Host host;
  Bundle bundle = host.start("plain");
  takeJournal();
  const HookGuard hook([&](const std::string& entry) {
    if (entry == "construct Plain") bundle.Uninstall();
  });
  EXPECT_EQ(host.service<Greeter>(), nullptr);
  EXPECT_EQ(bundle.GetState(), Bundle::STATE_UNINSTALLED);
  EXPECT_THAT(takeJournal(),
              ElementsAre("new", "construct Plain", "test_plain: context taken away",
                          "activate Plain", "deactivate Plain", "delete", "destroy Plain"));
  EXPECT_THAT(host.takeEvents(), IsEmpty());
}

TEST(Reentrancy, BundleCannotBeChangedWhileItIsBeingStopped) {
  Host host;
  Bundle bundle = host.start("plain");
  host.service<Greeter>();
  std::vector<std::string> errors;
  const auto attempt = [&](auto action) {
    try {
      action();
    } catch (const std::logic_error& error) {
      errors.emplace_back(error.what());
    }
  };
  const HookGuard hook([&](const std::string& entry) {
    if (entry != "deactivate Plain") return;
    attempt([&] { bundle.Start(); });
    attempt([&] { bundle.Stop(); });
    attempt([&] { bundle.Uninstall(); });
    attempt([&] { host.framework().Stop(); });
    host.start("spare");  // another bundle can be
  });
  bundle.Stop();
  const std::string refusal = "bundle test_plain: is just being started or stopped";
  EXPECT_THAT(errors, ElementsAre(refusal, refusal, refusal, refusal));
  EXPECT_EQ(host.service<Greeter>()->greet(), "I am Spare");
}

TEST(Threads, OneInstanceIsMadeForAll) {
  Host host;
  host.start("pair");
  std::vector<std::future<std::shared_ptr<Listener>>> users;
  Signal go;
  for (int i = 0; i < 8; ++i) {
    users.push_back(std::async(std::launch::async, [&] {
      go.wait();
      return host.service<Listener>();
    }));
  }
  go.set();
  const std::shared_ptr<Listener> first = users.front().get();
  ASSERT_TRUE(first);
  for (std::size_t i = 1; i < users.size(); ++i) EXPECT_EQ(users[i].get(), first);
  const auto journal = takeJournal();
  EXPECT_EQ(std::count(journal.begin(), journal.end(), "construct Consumer"), 1);
  EXPECT_EQ(std::count(journal.begin(), journal.end(), "construct Provider"), 1);
}

TEST(Threads, UseAndStopAtTheSameTime) {
  Host host;
  host.start("consumer");
  Bundle provider = host.start("provider");
  std::atomic<bool> done{false};
  std::atomic<int> uses{0};
  std::vector<std::future<void>> users;
  for (int i = 0; i < 3; ++i) {
    users.push_back(std::async(std::launch::async, [&] {
      while (!done) {
        if (const auto listener = host.service<Listener>()) {
          if (listener->hear() == "heard: I am Provider") ++uses;
        }
      }
    }));
  }
  constexpr int kRounds = 100;
  for (int round = 0; round < kRounds; ++round) {
    while (uses == 0) std::this_thread::yield();
    provider.Stop();
    uses = 0;
    provider.Start();
  }
  done = true;
  users.clear();
  provider.Uninstall();
  const auto journal = takeJournal();
  const auto count = [&](const char* entry) {
    return std::count(journal.begin(), journal.end(), entry);
  };
  EXPECT_GE(count("construct Provider"), kRounds / 2);
  for (const auto& [begin, end] :
       {std::pair("new", "delete"), std::pair("construct Provider", "destroy Provider"),
        std::pair("construct Consumer", "destroy Consumer"),
        std::pair("activate Provider", "deactivate Provider")}) {
    EXPECT_EQ(count(begin), count(end)) << begin;
  }
}

/// Stops the bundle "plain" while another thread makes its instance; the constructor ends with
/// `lastStep`, once the stop waits for it.
void stopWhilePlainIsMade(Host& host, Bundle& plain, const std::function<void()>& lastStep) {
  Signal constructing;
  Signal finish;
  const HookGuard hook([&](const std::string& entry) {
    if (entry != "construct Plain") return;
    constructing.set();
    finish.wait();
    lastStep();
  });
  auto user = std::async(std::launch::async,
                         [&] { return host.service<Greeter>("(component.name=*Plain)"); });
  constructing.wait();
  auto stopper = std::async(std::launch::async, [&] { plain.Stop(); });
  while (host.context().GetServiceReference<Greeter>()) std::this_thread::yield();
  EXPECT_EQ(stopper.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
  finish.set();
  stopper.get();
  EXPECT_EQ(user.get(), nullptr);
  EXPECT_EQ(plain.GetState(), Bundle::STATE_RESOLVED);
  EXPECT_THAT(host.takeEvents(), IsEmpty());
}

TEST(Threads, StopWaitsForAnInstanceThatIsBeingMade) {
  Host host;
  Bundle plain = host.start("plain");
  takeJournal();
  stopWhilePlainIsMade(host, plain, [] {});
  EXPECT_THAT(takeJournal(),
              ElementsAre("new", "construct Plain", "activate Plain", "deactivate Plain", "delete",
                          "destroy Plain", "test_plain: context taken away"));
}

TEST(Threads, ConstructorThatChangesBundlesDoesNotHangAStop) {
  Host host;
  Bundle plain = host.start("plain");
  Bundle spare = host.install("spare");
  stopWhilePlainIsMade(host, plain, [&spare] { spare.Start(); });
  EXPECT_EQ(spare.GetState(), Bundle::STATE_ACTIVE);
}

TEST(Threads, ConstructorsThatAskForEachOtherDoNotHang) {
  Host host;
  host.start("plain");
  host.start("spare");
  Signal plain;
  Signal spare;
  const HookGuard hook([&](const std::string& entry) {
    if (entry == "construct Plain") {
      plain.set();
      spare.wait();
      host.service<Greeter>("(component.name=*Spare)");
    } else if (entry == "construct Spare") {
      spare.set();
      plain.wait();
      host.service<Greeter>("(component.name=*Plain)");
    }
  });
  auto first = std::async(std::launch::async,
                          [&] { return host.service<Greeter>("(component.name=*Plain)"); });
  auto second = std::async(std::launch::async,
                           [&] { return host.service<Greeter>("(component.name=*Spare)"); });
  EXPECT_TRUE(first.get());
  EXPECT_TRUE(second.get());
  // The one that asked last was refused, so that the other could have what it asked for.
  EXPECT_THAT(host.takeEvents(),
              ElementsAre(::testing::EndsWith(
                  "its service is asked for by what its instance is waiting for")));
}

TEST(Threads, FrameworksAreIndependent) {
  std::vector<std::future<void>> users;
  for (int i = 0; i < 3; ++i) {
    users.push_back(std::async(std::launch::async, [] {
      for (int round = 0; round < 10; ++round) {
        Host host;
        host.start("pair");
        EXPECT_EQ(host.service<Listener>()->hear(), "heard: I am Provider");
      }
    }));
  }
}

}  // namespace
}  // namespace service_runtime_test
