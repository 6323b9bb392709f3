/// @file
/// Writes generated input to standard output, for trials in bulk.
///
///     tessel_generate document BYTES     one document of that size
///     tessel_generate controls COUNT     one document with so many controls
///     tessel_generate ndjson BYTES       controls, one a line, until that size is reached

#include <charconv>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <exception>
#include <optional>
#include <string>
#include <string_view>

#include "document_generator.hpp"

namespace {

std::optional<std::size_t> readCount(std::string_view text) {
  std::size_t count = 0;
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, count);
  if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
  return count;
}

bool write(const std::string& text) {
  return std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
}

bool writeLines(std::size_t bytes) {
  benchmarks::DocumentGenerator generator;
  std::size_t written = 0;
  for (std::size_t line = 0; written < bytes; ++line) {
    const auto& kinds = benchmarks::measuredKinds();
    const std::string control = generator.control(*kinds[line % kinds.size()]) + '\n';
    if (!write(control)) return false;
    written += control.size();
  }
  return true;
}

int run(int argc, char** argv) {
  const std::string_view what = argc == 3 ? argv[1] : "";
  const auto count = argc == 3 ? readCount(argv[2]) : std::nullopt;
  if (!count || (what != "document" && what != "controls" && what != "ndjson")) {
    std::fputs("usage: tessel_generate document|controls|ndjson NUMBER\n", stderr);
    return 2;
  }
  bool done = false;
  if (what == "ndjson") {
    done = writeLines(*count);
  } else {
    done = write(what == "document" ? benchmarks::generateDocument(*count)
                                    : benchmarks::generateControls(*count)) &&
           std::fputc('\n', stdout) != EOF;
  }
  return done && std::fflush(stdout) == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "tessel_generate: %s\n", error.what());
    return 1;
  }
}
