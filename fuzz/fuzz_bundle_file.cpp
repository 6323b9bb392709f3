/// @file
/// Any bytes as the file of a bundle, and as the archive inside a file that is otherwise right: the
/// readers of sections and of the archive. bundle_check.hpp has what is checked.

#include "bundle_check.hpp"
#include "support/file_builder.hpp"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace service_runtime_test;
  const std::string bytes(fuzz::asText(data, size));
  fuzz::readAsBundle(bytes);
  fuzz::readAsBundle(elfImage(bundleSections(bytes)));
  return 0;
}
