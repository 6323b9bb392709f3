#include "runtime_marker.hpp"

#include <algorithm>
#include <exception>
#include <string>
#include <vector>

// Uses std::vector without including it.
#define BOOST_DLL_USE_STD_FS
#include <boost/dll/library_info.hpp>

namespace tessel_tool {

bool isForEmbeddedRuntime(const std::filesystem::path& bundle) {
  try {
    const std::vector<std::string> sections = boost::dll::library_info(bundle).sections();
    return std::find(sections.begin(), sections.end(), ".tessel_runtime") != sections.end();
  } catch (const std::exception&) {
    return false;  // No library: the runtime says what is wrong with it.
  }
}

}  // namespace tessel_tool
