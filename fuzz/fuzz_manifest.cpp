/// @file
/// Any bytes as the manifest of a bundle whose file and archive are right, so that they come to the
/// manifest's reader at once. bundle_check.hpp has what is checked.

#include "bundle_check.hpp"
#include "support/file_builder.hpp"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::readAsBundle(service_runtime_test::craftedBundle(std::string(fuzz::asText(data, size))));
  return 0;
}
