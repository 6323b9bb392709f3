#include "json_file.hpp"

#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace benchmarks {

void writeJsonFile(const std::string& path, const nlohmann::json& json) {
  std::ofstream file(path);
  file << json.dump(2) << '\n';
  if (!file.flush()) throw std::runtime_error("cannot write " + path);
}

}  // namespace benchmarks
