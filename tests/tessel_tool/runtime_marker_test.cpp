#include "tessel_tool/runtime_marker.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace tessel_tool {
namespace {

TEST(RuntimeMarker, IsFoundInABundleForTheEmbeddedRuntimeOnly) {
  EXPECT_EQ(isForEmbeddedRuntime(TEST_BUNDLE), TESSEL_RUNTIME_IS_EMBEDDED);
  EXPECT_FALSE(isForEmbeddedRuntime(TEST_LIBRARY));
}

TEST(RuntimeMarker, IsNotFoundInWhatIsNoLibrary) {
  const auto path = std::filesystem::path(testing::TempDir()) / "tessel_runtime_marker";
  EXPECT_FALSE(isForEmbeddedRuntime(path / "missing"));
  EXPECT_FALSE(isForEmbeddedRuntime(path.parent_path()));
  for (const std::string content : {"", ".tessel_runtime",
                                    "\x7f"
                                    "ELF"}) {
    std::ofstream(path, std::ios::binary) << content;
    EXPECT_FALSE(isForEmbeddedRuntime(path)) << content;
  }
  std::filesystem::remove(path);
}

}  // namespace
}  // namespace tessel_tool
