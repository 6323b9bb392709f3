/// @file
/// What the counting of instructions runs under callgrind: each measured call once, after
/// everything that happens on first use alone has happened. Callgrind writes a file for each call,
/// named after it; outside callgrind the program shows nothing.

#include <valgrind/callgrind.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "corpus.hpp"
#include "document_generator.hpp"
#include "gx/zero.hpp"
#include "literal_recognition.hpp"

namespace {

using benchmarks::Kind;

constexpr std::size_t kControlsOfKind = 20;

template <typename Action>
void count(const std::string& name, const Action& action) {
  action();
  CALLGRIND_START_INSTRUMENTATION;
  CALLGRIND_ZERO_STATS;
  action();
  CALLGRIND_DUMP_STATS_AT(name.c_str());
  CALLGRIND_STOP_INSTRUMENTATION;
}

void countKind(Kind kind) {
  const auto controls = benchmarks::controlsOf(kind, kControlsOfKind);
  const std::string name = benchmarks::nameOf(kind);
  count("recognition: " + name, [&] {
    for (const auto& control : controls) benchmarks::recognize(*control->claimed().front().json);
  });
  std::vector<gx::zero::Model> models;
  count("build: " + name, [&] {
    for (const auto& control : controls) {
      const auto& object = control->claimed().front();
      models.push_back(gx::zero::Model::create());
      object.builder->build(models.back(), *object.json);
    }
  });
}

void countStrangers() {
  const benchmarks::Corpus corpus(benchmarks::DocumentGenerator().strangerLine());
  count("recognition: nothing of ours", [&] {
    for (std::size_t round = 0; round < kControlsOfKind; ++round) {
      for (const auto* object : corpus.strangers()) benchmarks::recognize(*object);
    }
  });
}

}  // namespace

int main() {
  for (std::size_t kind = 0; kind < benchmarks::kKindCount; ++kind) {
    countKind(static_cast<Kind>(kind));
  }
  countStrangers();
}
