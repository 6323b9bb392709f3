#include "runtime_marker.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "support/temporary_folder.hpp"

namespace tessel_tool {
namespace {

TEST(RuntimeMarker, IsFoundInABundleForTheEmbeddedRuntimeOnly) {
  EXPECT_EQ(isForEmbeddedRuntime(TEST_BUNDLE), TESSEL_RUNTIME_IS_EMBEDDED);
  EXPECT_FALSE(isForEmbeddedRuntime(TEST_LIBRARY));
}

TEST(RuntimeMarker, IsNotFoundInWhatIsNoLibrary) {
  const test_support::TemporaryFolder folder;
  const std::filesystem::path path = folder.path() / "library";
  EXPECT_FALSE(isForEmbeddedRuntime(folder.path() / "missing"));
  EXPECT_FALSE(isForEmbeddedRuntime(folder.path()));
  for (const std::string content : {"", ".tessel_runtime",
                                    "\x7f"
                                    "ELF"}) {
    std::ofstream(path, std::ios::binary) << content;
    EXPECT_FALSE(isForEmbeddedRuntime(path)) << content;
  }
}

}  // namespace
}  // namespace tessel_tool
