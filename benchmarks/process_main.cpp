/// @file
/// What is measured in a process of its own. Built twice: with the system's allocator, and with the
/// tool's.
///
/// usage: tessel_process import|memory FILE
///   import  the processor time of the first import of the text and the median of the next ones, in
///           nanoseconds
///   memory  the size of the text, and by how much the process's memory at its highest during the
///           parse lay above what it was with the text alone, in bytes

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <utility>

#include "corpus.hpp"
#include "reference_host/json/parse.hpp"

namespace {

constexpr std::size_t kFurtherImports = 25;

std::string readFile(const std::string& path) {
  std::string text(static_cast<std::size_t>(std::filesystem::file_size(path)), '\0');
  std::ifstream file(path, std::ios::binary);
  if (!file.read(text.data(), static_cast<std::streamsize>(text.size()))) {
    throw std::runtime_error("cannot read " + path);
  }
  return text;
}

double processorNanoseconds() {
  return static_cast<double>(std::clock()) * (1e9 / static_cast<double>(CLOCKS_PER_SEC));
}

double nanosecondsOfImport(const std::string& text) {
  const double start = processorNanoseconds();
  benchmarks::importText(text);
  return processorNanoseconds() - start;
}

void measureImports(const std::string& text) {
  const double first = nanosecondsOfImport(text);
  std::array<double, kFurtherImports> further{};
  for (double& time : further) time = nanosecondsOfImport(text);
  std::nth_element(further.begin(), further.begin() + kFurtherImports / 2, further.end());
  std::printf("%.0f %.0f\n", first, further[kFurtherImports / 2]);
}

/// An entry of the process's status, which the system gives in kB.
double statusBytes(const std::string& key) {
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line)) {
    if (line.compare(0, key.size(), key) == 0) return std::stod(line.substr(key.size() + 1)) * 1024;
  }
  throw std::runtime_error("the system does not tell " + key);
}

void measureMemory(std::string text) {
  const std::size_t size = text.size();
  const double before = statusBytes("VmRSS");
  const foundation::json::Value value = reference_host::json::parseInPlace(std::move(text));
  std::printf("%zu %.0f\n", size, statusBytes("VmHWM") - before);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const std::string what = argc == 3 ? argv[1] : "";
    if (what != "import" && what != "memory") {
      throw std::runtime_error("usage: tessel_process import|memory FILE");
    }
    std::string text = readFile(argv[2]);
    if (what == "import") {
      measureImports(text);
    } else {
      measureMemory(std::move(text));
    }
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "tessel_process: %s\n", error.what());
    return 2;
  }
}
