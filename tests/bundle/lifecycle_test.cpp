// The bundle through many lives in one process. With either runtime; unloading is asked of the
// embedded one alone, as CppMicroServices never unloads a library.

#include <gmock/gmock.h>
#include <unistd.h>

#include <boost/log/attributes/value_extraction.hpp>
#include <boost/log/core/core.hpp>
#include <boost/log/core/record_view.hpp>
#include <boost/log/sinks/basic_sink_backend.hpp>
#include <boost/log/sinks/frontend_requirements.hpp>
#include <boost/log/sinks/unlocked_frontend.hpp>
#include <boost/make_shared.hpp>
#include <cstddef>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "contract/samples.hpp"
#include "product.hpp"
#include "support/records.hpp"

namespace bundle_test {
namespace {

using cppmicroservices::Bundle;
using test_support::json;

constexpr int kWarmUpRounds = 50;
constexpr int kRounds = 200;
constexpr std::size_t kGrowthBound = 256 * 1024;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kSanitized = true;
#elif defined(__has_feature)
constexpr bool kSanitized = __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
constexpr bool kSanitized = false;
#endif

bool isMapped() {
  const std::string file = std::filesystem::path(BUNDLE).filename().string();
  std::ifstream maps("/proc/self/maps");
  for (std::string mapping; std::getline(maps, mapping);) {
    if (mapping.find(file) != std::string::npos) return true;
  }
  return false;
}

void expectUnloaded() {
  if (EMBEDDED_RUNTIME) {
    EXPECT_FALSE(isMapped());
  }
}

/// Bytes of this process's memory that are in use now.
std::size_t residentBytes() {
  std::ifstream file("/proc/self/statm");
  std::size_t total = 0;
  std::size_t resident = 0;
  file >> total >> resident;
  return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

/// Asks every builder, and builds what each claims.
void useAll(Host& host) {
  const auto builders = productBuilders(host);
  const auto model = gx::zero::Model::create();
  for (std::size_t index = 0; index < builders.size(); ++index) {
    const auto value = contract::wholeObjects(contract::kinds()[index]).front().json;
    ASSERT_TRUE(builders[index].canBuild(value));
    ASSERT_TRUE(builders[index].build(model, value));
  }
  ASSERT_EQ(built(*presentServiceOf<NodeBuilder>(host, kHeader), kTask),
            builtTask(kEmptyInlineNode));
}

/// By how many bytes memory grows while an action is repeated, once it has warmed up.
template <typename Action>
std::size_t growthOf(const Action& action) {
  for (int round = 0; round < kWarmUpRounds; ++round) action();
  const std::size_t before = residentBytes();
  for (int round = 0; round < kRounds; ++round) action();
  const std::size_t after = residentBytes();
  const std::size_t growth = after > before ? after - before : 0;
  ::testing::Test::RecordProperty("growth_bytes", std::to_string(growth));
  // Sanitizers keep what was freed.
  return kSanitized ? 0 : growth;
}

TEST(Lifecycle, InstallsStartsIsUsedAndGoesManyTimes) {
  Host host;
  const std::size_t growth = growthOf([&host] {
    Bundle bundle = installProduct(host);
    bundle.Start();
    useAll(host);
    // Some runtimes load it only now.
    EXPECT_TRUE(isMapped());
    bundle.Stop();
    bundle.Uninstall();
    expectUnloaded();
  });
  EXPECT_LE(growth, kGrowthBound);
  EXPECT_THAT(host.takeEvents(), ::testing::IsEmpty());
}

TEST(Lifecycle, StopsAndStartsManyTimes) {
  Host host;
  Bundle bundle = installProduct(host);
  const std::size_t growth = growthOf([&host, &bundle] {
    bundle.Start();
    EXPECT_THAT(servicesOf(host, bundle), ::testing::ElementsAreArray(productServices()));
    useAll(host);
    bundle.Stop();
    EXPECT_THAT(servicesOf(host, bundle), ::testing::IsEmpty());
  });
  EXPECT_LE(growth, kGrowthBound);
  EXPECT_THAT(host.takeEvents(), ::testing::IsEmpty());
}

TEST(Lifecycle, LivesThroughManyFrameworks) {
  const std::size_t growth = growthOf([] {
    {
      Host host;
      startProduct(host);
      useAll(host);
    }
    expectUnloaded();
  });
  // CppMicroServices keeps some 40 kB of each framework in which a component had a reference,
  // whatever the bundle.
  if (EMBEDDED_RUNTIME) {
    EXPECT_LE(growth, kGrowthBound);
  }
}

/// Keeps the records themselves, as a queue of a log does.
class KeepingSink
    : public boost::log::sinks::basic_sink_backend<boost::log::sinks::concurrent_feeding> {
 public:
  void consume(const boost::log::record_view& record) { records.push_back(record); }

  std::vector<boost::log::record_view> records;
};

TEST(Lifecycle, WhatItLoggedOutlivesIt) {
  const auto sink = boost::make_shared<boost::log::sinks::unlocked_sink<KeepingSink>>();
  boost::log::core::get()->add_sink(sink);
  std::vector<std::string> expected;
  for (int round = 0; round < 20; ++round) {
    {
      Host host;
      startProduct(host);
      for (const std::string& text : test_support::recordsOf([&host] {
             presentServiceOf<NodeBuilder>(host, kInline)
                 ->build(gx::zero::Model::create(), json(R"({"view":"a"})"));
           })) {
        expected.push_back("8 " + text);
      }
    }
    expectUnloaded();
  }
  boost::log::core::get()->remove_sink(sink);
  EXPECT_THAT(expected, ::testing::SizeIs(20 * 3));
  // Read only now: the bundle that wrote them is gone.
  std::vector<std::string> texts;
  for (const auto& record : sink->locked_backend()->records) {
    texts.push_back(std::to_string(*boost::log::extract<int>("Severity", record)) + " " +
                    *boost::log::extract<std::string>("Message", record));
  }
  EXPECT_EQ(texts, expected);
}

TEST(Lifecycle, WhatItBuiltAndThrewOutlivesIt) {
  document::gxzero::Node node;
  const auto model = gx::zero::Model::create();
  std::exception_ptr error;
  {
    Host host;
    startProduct(host);
    const auto header = presentServiceOf<NodeBuilder>(host, kHeader);
    node = header->build(model, json(kTask));
    try {
      header->build(model, json("{}"));
    } catch (...) {
      error = std::current_exception();
    }
  }
  expectUnloaded();
  EXPECT_EQ(reference_host::exporting::toJson(node), builtTask(kEmptyInlineNode));
  ASSERT_TRUE(error);
  try {
    std::rethrow_exception(error);
  } catch (const std::runtime_error& caught) {
    EXPECT_STREQ(caught.what(), "invalid conversion: undefined to array");
  }
}

/// What a program may leave behind in objects that live as long as the process.
struct Leftovers {
  std::unique_ptr<Host> host;
  std::vector<reference_host::importer::NamedBuilder> builders;
};

Leftovers& leftovers() {
  static Leftovers all;
  return all;
}

[[noreturn]] void exitWith(bool hostAlive, bool buildersHeld) {
  leftovers().host = std::make_unique<Host>();
  startProduct(*leftovers().host);
  leftovers().builders = productBuilders(*leftovers().host);
  useAll(*leftovers().host);
  if (!buildersHeld) leftovers().builders.clear();
  if (!hostAlive) leftovers().host.reset();
  std::exit(::testing::Test::HasFailure() ? 1 : 0);
}

TEST(LifecycleDeathTest, TheProcessEndsWellHoweverMuchIsLeft) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(exitWith(false, false), ::testing::ExitedWithCode(0), "");
  EXPECT_EXIT(exitWith(false, true), ::testing::ExitedWithCode(0), "");
  EXPECT_EXIT(exitWith(true, false), ::testing::ExitedWithCode(0), "");
  EXPECT_EXIT(exitWith(true, true), ::testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace bundle_test
