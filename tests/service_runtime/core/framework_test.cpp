// The embedded framework: bundles, libraries, listeners, handles.

#include <dlfcn.h>
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "services.hpp"
#include "support/file_builder.hpp"
#include "support/runtime_host.hpp"
#include "support/temporary_folder.hpp"

namespace service_runtime_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using cppmicroservices::Bundle;
using cppmicroservices::BundleContext;
using cppmicroservices::Framework;
using cppmicroservices::FrameworkEvent;
using cppmicroservices::FrameworkFactory;
using cppmicroservices::ServiceReferenceU;

constexpr std::chrono::milliseconds kForEver = std::chrono::milliseconds::zero();

bool isLoaded(const std::string& name) {
  void* const handle = dlopen(bundlePath(name).c_str(), RTLD_LAZY | RTLD_NOLOAD);
  if (handle) dlclose(handle);
  return handle != nullptr;
}

template <class Error, class Action>
std::string errorOf(Action action) {
  try {
    action();
  } catch (const Error& error) {
    return error.what();
  }
  return "no error";
}

TEST(Framework, StartsStopsAndStartsAgain) {
  std::vector<std::string> events;
  Framework framework = FrameworkFactory().NewFramework();
  EXPECT_EQ(framework.GetState(), Bundle::STATE_INSTALLED);
  EXPECT_EQ(framework.GetSymbolicName(), "system_bundle");
  EXPECT_FALSE(framework.GetBundleContext());
  framework.Start();
  framework.Start();
  EXPECT_EQ(framework.GetState(), Bundle::STATE_ACTIVE);
  BundleContext context = framework.GetBundleContext();
  context.AddFrameworkListener(
      [&](const FrameworkEvent& event) { events.push_back(textOf(event)); });
  EXPECT_EQ(framework.WaitForStop(std::chrono::milliseconds(1)).GetType(),
            FrameworkEvent::FRAMEWORK_WAIT_TIMEDOUT);
  Bundle bundle = context.InstallBundles(bundlePath("plain")).front();
  bundle.Start();

  framework.Stop();
  framework.Stop();
  EXPECT_EQ(textOf(framework.WaitForStop(kForEver)), "STOPPED: framework stopped");
  EXPECT_EQ(framework.GetState(), Bundle::STATE_RESOLVED);
  EXPECT_EQ(bundle.GetState(), Bundle::STATE_UNINSTALLED);
  EXPECT_FALSE(context);
  EXPECT_FALSE(isLoaded("plain"));

  framework.Start();
  EXPECT_TRUE(framework.GetBundleContext());
  EXPECT_THAT(events, ElementsAre("STOPPED: framework stopped", "STARTED: framework started"));
  EXPECT_EQ(errorOf<std::runtime_error>([&] { framework.Uninstall(); }),
            "a framework cannot be uninstalled");
}

TEST(Framework, StopsWhenItsLastHandleGoes) {
  std::shared_ptr<Greeter> greeter;
  BundleContext context;
  {
    Bundle bundle;
    {
      Framework framework = FrameworkFactory().NewFramework();
      framework.Start();
      context = framework.GetBundleContext();
      bundle = context.InstallBundles(bundlePath("plain")).front();
      bundle.Start();
      greeter = context.GetService(context.GetServiceReference<Greeter>());
    }
    EXPECT_TRUE(context);
    EXPECT_EQ(bundle.GetState(), Bundle::STATE_ACTIVE);
    takeJournal();
  }
  EXPECT_FALSE(context);
  EXPECT_THAT(takeJournal(),
              ElementsAre("deactivate Plain", "delete", "test_plain: context taken away"));
  EXPECT_EQ(greeter->greet(), "I am Plain");
  EXPECT_TRUE(isLoaded("plain"));
  greeter.reset();
  EXPECT_THAT(takeJournal(), ElementsAre("destroy Plain"));
  EXPECT_FALSE(isLoaded("plain"));
}

TEST(Framework, LibraryIsLoadedFromStartToUninstallAndWhileAnObjectIsInUse) {
  Host host;
  host.start("consumer");
  Bundle provider = host.install("provider");
  EXPECT_FALSE(isLoaded("provider"));
  provider.Start();
  EXPECT_TRUE(isLoaded("provider"));
  std::shared_ptr<Listener> listener = host.service<Listener>();
  provider.Uninstall();
  EXPECT_TRUE(isLoaded("provider"));
  EXPECT_EQ(listener->hear(), "heard: I am Provider");
  listener.reset();
  EXPECT_FALSE(isLoaded("provider"));
  EXPECT_TRUE(isLoaded("consumer"));

  Bundle plain = host.start("plain");
  host.service<Greeter>();
  plain.Stop();
  EXPECT_TRUE(isLoaded("plain"));
  plain.Uninstall();
  EXPECT_FALSE(isLoaded("plain"));
}

TEST(Framework, InstallsABundleOnce) {
  Host host;
  const Bundle first = host.install("plain");
  const std::string roundabout = bundlePath("../bundles/plain");
  EXPECT_THAT(host.context().InstallBundles(roundabout), ElementsAre(first));

  const test_support::TemporaryFolder folder;
  const std::string copy = (folder.path() / "copy.so").string();
  std::filesystem::copy_file(bundlePath("plain"), copy);
  EXPECT_EQ(errorOf<std::runtime_error>([&] { host.context().InstallBundles(copy); }),
            copy + ": bundle test_plain is installed already, from " + bundlePath("plain"));
}

TEST(Framework, RelativePathCountsFromTheFolderOfTheInstallation) {
  Host host;
  const test_support::TemporaryFolder folder;
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(TEST_BUNDLE_DIRECTORY);
  Bundle bundle = host.context().InstallBundles("plain.so").front();
  std::filesystem::current_path(folder.path());
  bundle.Start();
  EXPECT_TRUE(isLoaded("plain"));
  bundle.Uninstall();
  EXPECT_EQ(errorOf<std::runtime_error>([&] { host.context().InstallBundles("plain.so"); }),
            "plain.so: no such file");
  EXPECT_EQ(errorOf<std::runtime_error>([&] { host.context().InstallBundles(""); }),
            ": no such file");
  std::filesystem::current_path(before);
}

TEST(Framework, BundleThatCannotBeLoadedCanBeStartedLater) {
  Host host;
  const test_support::TemporaryFolder folder;
  const std::string path = (folder.path() / "crafted.so").string();
  std::ofstream(path, std::ios::binary) << craftedBundle(kCraftedManifest);
  Bundle bundle = host.context().InstallBundles(path).front();
  EXPECT_THAT(errorOf<std::runtime_error>([&] { bundle.Start(); }),
              ::testing::StartsWith(path + ": cannot be loaded: " + path + ": "));
  EXPECT_EQ(bundle.GetState(), Bundle::STATE_INSTALLED);
  EXPECT_FALSE(bundle.GetBundleContext());

  std::ofstream(path, std::ios::binary)
      << craftedBundle(R"({"bundle.symbolic_name": "crafted", "changed": true})");
  EXPECT_EQ(errorOf<std::runtime_error>([&] { bundle.Start(); }),
            path + ": has changed since it was installed");
  std::filesystem::remove(path);
  EXPECT_EQ(errorOf<std::runtime_error>([&] { bundle.Start(); }), path + ": no such file");
  bundle.Uninstall();
  EXPECT_EQ(errorOf<std::logic_error>([&] { bundle.Start(); }), "bundle crafted: is uninstalled");
  EXPECT_EQ(errorOf<std::logic_error>([&] { bundle.Stop(); }), "bundle crafted: is uninstalled");
  EXPECT_THAT(host.takeEvents(), IsEmpty());
}

TEST(Framework, FailureOfAContextSetterIsTold) {
  Host host;
  Bundle bundle = host.install("plain");
  const std::string setter = "calling _us_set_bundle_context_instance_test_plain failed: ";
  {
    const HookGuard hook([](const std::string&) { throw std::runtime_error("no context"); });
    EXPECT_EQ(errorOf<std::runtime_error>([&] { bundle.Start(); }),
              bundlePath("plain") + ": " + setter + "no context");
  }
  EXPECT_EQ(bundle.GetState(), Bundle::STATE_INSTALLED);
  bundle.Start();
  {
    const HookGuard hook([](const std::string&) { throw 42; });  // NOLINT: no exception on purpose
    bundle.Stop();
  }
  EXPECT_THAT(host.takeEvents(), ElementsAre("WARNING: bundle test_plain: " + setter +
                                             "an exception that is no std::exception"));
  EXPECT_EQ(bundle.GetState(), Bundle::STATE_RESOLVED);
}

TEST(Framework, ListenersMayFailAndChangeBundles) {
  // Both outlive the host, whose end is an event too.
  std::vector<std::string> told;
  std::optional<Bundle> bundle;
  Host host;
  bundle = host.install("faulty");
  host.context().AddFrameworkListener(
      [](const FrameworkEvent&) { throw std::runtime_error("dropped"); });
  host.context().AddFrameworkListener([&](const FrameworkEvent& event) {
    told.push_back(textOf(event));
    bundle->Uninstall();
  });
  Bundle(*bundle).Start();
  EXPECT_EQ(bundle->GetState(), Bundle::STATE_UNINSTALLED);
  EXPECT_EQ(told.size(), 3U);
  EXPECT_EQ(told, host.takeEvents());
}

TEST(Framework, EmptyHandlesSaySo) {
  Bundle bundle;
  EXPECT_FALSE(bundle);
  EXPECT_EQ(errorOf<std::invalid_argument>([&] { bundle.GetState(); }),
            "the bundle handle is empty");
  EXPECT_EQ(errorOf<std::runtime_error>([] { BundleContext().GetServiceReferences("", ""); }),
            "the bundle context is no longer valid");

  Host host;
  EXPECT_EQ(errorOf<std::invalid_argument>([&] { host.context().GetService(ServiceReferenceU()); }),
            "the service reference is empty");
  const ServiceReferenceU empty;
  EXPECT_FALSE(empty);
  EXPECT_FALSE(empty.GetBundle());
  EXPECT_TRUE(empty.GetProperty("x").Empty());
}

TEST(Framework, ServicesAreOrderedByRankAndThenByAge) {
  Host host;
  host.start("spare");
  host.start("plain");
  const Bundle provider = host.start("provider");
  std::vector<std::string> names;
  const auto references = host.context().GetServiceReferences<Greeter>();
  for (const auto& reference : references) {
    names.push_back(reference.GetProperty("component.name").ToString());
  }
  EXPECT_THAT(names, ElementsAre("service_runtime_test::Provider", "service_runtime_test::Spare",
                                 "service_runtime_test::Plain"));
  EXPECT_EQ(host.context().GetServiceReference<Greeter>(), references[0]);
  EXPECT_EQ(references[0].GetBundle(), provider);
  EXPECT_FALSE(cppmicroservices::ServiceReference<Listener>(references[0]));
}

}  // namespace
}  // namespace service_runtime_test
