// The embedded framework used by several threads, and by a bundle's code while the framework calls
// it.

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
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

/// A hook for the time of one test.
class HookGuard {
 public:
  explicit HookGuard(Hook hook) { setHook(std::move(hook)); }
  ~HookGuard() { setHook(nullptr); }
  HookGuard(const HookGuard&) = delete;
  HookGuard& operator=(const HookGuard&) = delete;
};

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
              ElementsAre("ERROR: bundle test_plain, component service_runtime_test::Plain: its "
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
              ElementsAre("new Plain", "construct Plain", "test_plain: context taken away",
                          "activate Plain", "deactivate Plain", "delete Plain", "destroy Plain"));
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
  EXPECT_EQ(std::count(journal.begin(), journal.end(), "construct listener"), 1);
  EXPECT_EQ(std::count(journal.begin(), journal.end(), "construct Wanted"), 1);
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
       {std::pair("new Provider", "delete Provider"), std::pair("new Consumer", "delete Consumer"),
        std::pair("construct Provider", "destroy Provider"),
        std::pair("construct listener", "destroy listener"),
        std::pair("activate Provider", "deactivate Provider")}) {
    EXPECT_EQ(count(begin), count(end)) << begin;
  }
}

TEST(Threads, StopWaitsForAnInstanceThatIsBeingMade) {
  Host host;
  Bundle bundle = host.start("plain");
  takeJournal();
  Signal constructing;
  Signal finish;
  const HookGuard hook([&](const std::string& entry) {
    if (entry != "construct Plain") return;
    constructing.set();
    finish.wait();
  });
  auto user = std::async(std::launch::async, [&] { return host.service<Greeter>(); });
  constructing.wait();
  auto stopper = std::async(std::launch::async, [&] { bundle.Stop(); });
  while (host.context().GetServiceReference<Greeter>()) std::this_thread::yield();
  EXPECT_EQ(stopper.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
  finish.set();
  stopper.get();
  EXPECT_EQ(user.get(), nullptr);
  EXPECT_THAT(takeJournal(),
              ElementsAre("new Plain", "construct Plain", "activate Plain", "deactivate Plain",
                          "delete Plain", "destroy Plain", "test_plain: context taken away"));
  EXPECT_THAT(host.takeEvents(), IsEmpty());
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

TEST(Threads, ConstructorThatChangesBundlesDoesNotHangAStop) {
  Host host;
  Bundle plain = host.start("plain");
  Bundle spare = host.install("spare");
  Signal constructing;
  Signal stopping;
  const HookGuard hook([&](const std::string& entry) {
    if (entry != "construct Plain") return;
    constructing.set();
    stopping.wait();
    spare.Start();
  });
  auto user = std::async(std::launch::async,
                         [&] { return host.service<Greeter>("(component.name=*Plain)"); });
  constructing.wait();
  auto stopper = std::async(std::launch::async, [&] { plain.Stop(); });
  while (host.context().GetServiceReference<Greeter>()) std::this_thread::yield();
  stopping.set();
  stopper.get();
  EXPECT_EQ(user.get(), nullptr);
  EXPECT_EQ(plain.GetState(), Bundle::STATE_RESOLVED);
  EXPECT_EQ(spare.GetState(), Bundle::STATE_ACTIVE);
}

TEST(Threads, FrameworksAreIndependent) {
  std::vector<std::future<void>> users;
  for (int i = 0; i < 3; ++i) {
    users.push_back(std::async(std::launch::async, [] {
      for (int round = 0; round < 10; ++round) {
        Host host;
        host.start("pair");
        EXPECT_EQ(host.service<Listener>()->hear(), "heard: I am Wanted");
      }
    }));
  }
}

}  // namespace
}  // namespace service_runtime_test
