#include "bundle_location.hpp"

#define BOOST_DLL_USE_STD_FS
#include <boost/dll/runtime_symbol_info.hpp>
#include <system_error>

#include "builder_services.hpp"

namespace tessel_tool {

namespace {

namespace fs = std::filesystem;

void requireFile(const fs::path& path) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (status.type() == fs::file_type::not_found) throw BundleError(path, "there is no such bundle");
  if (error) throw BundleError(path, error.message());
  if (!fs::is_regular_file(status)) throw BundleError(path, "this is no file");
}

}  // namespace

fs::path locateBundle(const std::optional<std::string>& requested) {
  if (requested) {
    if (requested->empty()) throw BundleError("--bundle", "the path is empty");
    requireFile(*requested);
    return *requested;
  }
  const fs::path beside = boost::dll::program_location().parent_path();
  const fs::path libraries = beside.parent_path() / "lib";
  for (const fs::path& folder : {beside, libraries}) {
    fs::path bundle = folder / TESSEL_BUNDLE_FILE_NAME;
    std::error_code error;
    if (fs::is_regular_file(bundle, error)) return bundle;
  }
  throw BundleError(TESSEL_BUNDLE_FILE_NAME, "there is no such bundle in " + beside.string() +
                                                 " or " + libraries.string() +
                                                 "; --bundle PATH says where it is");
}

}  // namespace tessel_tool
