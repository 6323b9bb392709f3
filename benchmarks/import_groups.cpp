/// @file
/// Whole imports and parses, beside what other libraries make of the same text.

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

#include "benchmark/benchmark.h"
#include "corpus.hpp"
#include "document_generator.hpp"
#include "groups.hpp"
#include "peers.hpp"
#include "reference_host/json/parse.hpp"

namespace benchmarks {

namespace {

constexpr std::size_t kMegabyte = std::size_t{1} << 20U;
/// The fewest that a median is taken of: such a round takes many seconds.
constexpr std::size_t kRoundsOfLargeDocuments = 11;

using SharedText = std::shared_ptr<const std::string>;

SharedText shared(std::string text) {
  return std::make_shared<const std::string>(std::move(text));
}

void require(bool condition, const char* what) {
  if (!condition) throw std::runtime_error(what);
}

/// What two threads could reach at best: work that neither allocates nor shares.
std::uint64_t hashOf(const std::string& text) {
  std::uint64_t hash = 14695981039346656037U;
  for (const char character : text) {
    hash = (hash ^ static_cast<unsigned char>(character)) * 1099511628211U;
  }
  return hash;
}

Variant importOf(std::string name, const SharedText& text) {
  const std::size_t controls = importText(*text);
  return {std::move(name), controls, [text](int) { benchmark::DoNotOptimize(importText(*text)); }};
}

/// Time of a control in a large document against one in a small document.
Group growthGroup(const char* name, const char* rowName, const char* heldAgainst, SharedText small,
                  SharedText large, double goal) {
  Group group;
  group.name = name;
  group.unit = "control";
  group.variants = {importOf("large", large), importOf("small", small)};
  group.rows = {{rowName, heldAgainst, 0, 1, Bound::kAtMost, goal}};
  group.rounds = kRoundsOfLargeDocuments;
  group.untimedRuns = 3;
  return group;
}

}  // namespace

Group wholeImportGroup() {
  const SharedText text = shared(generateDocument(kMegabyte));
  const auto simdjson = std::make_shared<SimdjsonPeer>(*text);
  const std::size_t controls = importText(*text);
  require(nlohmannToStructs(*text) == controls, "nlohmann-json finds other controls");
  require(rapidjsonToStructs(*text) == controls, "RapidJSON finds other controls");
  require(simdjson->parse() && nlohmannParse(*text) == 2, "the document is not what was expected");
  Group group;
  group.name = "whole import";
  group.unit = "control";
  group.variants = {
      importOf("import", text),
      {"nlohmann parse", controls, [text](int) { benchmark::DoNotOptimize(nlohmannParse(*text)); }},
      {"simdjson dom", controls, [simdjson](int) { benchmark::DoNotOptimize(simdjson->parse()); }},
      {"nlohmann from_json", controls,
       [text](int) { benchmark::DoNotOptimize(nlohmannToStructs(*text)); }},
      {"rapidjson structs", controls,
       [text](int) { benchmark::DoNotOptimize(rapidjsonToStructs(*text)); }},
  };
  // Not judged: these ratios move with how much of the cache other processes leave. Those of
  // instructions are, by count_instructions.py.
  group.rows = {
      {"whole import, destroy all", "nlohmann-json: parse and destroy", 0, 1},
      {"whole import, destroy all", "simdjson: DOM parse, parser reused", 0, 2},
      {"whole import, destroy all", "nlohmann-json: from_json, UTF-16 structs", 0, 3},
      {"whole import, destroy all", "RapidJSON: document, UTF-16 structs", 0, 4},
  };
  return group;
}

Group parseGroup() {
  const SharedText text = shared(generateDocument(kMegabyte));
  require(rapidjsonToValue(*text) == reference_host::json::parse(*text),
          "RapidJSON makes another value");
  const std::size_t controls = importText(*text);
  Group group;
  group.name = "parse";
  group.unit = "control";
  group.variants = {
      {"parse", controls,
       [text](int) { benchmark::DoNotOptimize(reference_host::json::parse(*text)); }},
      {"rapidjson reader", controls,
       [text](int) { benchmark::DoNotOptimize(rapidjsonToValue(*text)); }},
  };
  group.rows = {{"text to value, destroy", "RapidJSON: reader to the same value", 0, 1,
                 Bound::kAtMost, 0.82}};
  return group;
}

Group threadsGroup() {
  const SharedText texts[] = {shared(generateDocument(kMegabyte)),
                              shared(generateDocument(kMegabyte))};
  const std::size_t controls = importText(*texts[0]);
  const auto import = [first = texts[0], second = texts[1]](int thread) {
    benchmark::DoNotOptimize(importText(thread == 0 ? *first : *second));
  };
  const auto hash = [first = texts[0], second = texts[1]](int thread) {
    benchmark::DoNotOptimize(hashOf(thread == 0 ? *first : *second));
  };
  Group group;
  group.name = "threads";
  group.unit = "control";
  group.variants = {{"import in two threads", controls, import, 2},
                    {"import in one thread", controls, import, 1},
                    {"hash in two threads", controls, hash, 2},
                    {"hash in one thread", controls, hash, 1}};
  group.secondsOfRun = 0.1;
  group.wallClock = true;
  group.rows = {
      {"gain of two threads, separate documents", "gain of two threads that allocate nothing", 0, 1,
       Bound::kAtLeast, 0.93,
       [](const RoundTimes& times) { return times[1] / times[0] / (times[3] / times[2]); }},
      {"import in two threads", "import in one thread", 0, 1},
      {"hash of the text in two threads", "hash of the text in one thread", 2, 3}};
  return group;
}

Group documentSizeGroup() {
  return growthGroup("document size", "import of 64 MB", "import of 1 MB",
                     shared(generateDocument(kMegabyte)), shared(generateDocument(64 * kMegabyte)),
                     1.25);
}

Group controlCountGroup() {
  return growthGroup("control count", "import of 1,000,000 controls", "import of 160,000 controls",
                     shared(generateControls(160'000)), shared(generateControls(1'000'000)), 1.15);
}

const std::vector<GroupEntry>& groups() {
  static const std::vector<GroupEntry> all = {{"whole import", wholeImportGroup},
                                              {"parse", parseGroup},
                                              {"build", buildGroup},
                                              {"bare structs", bareStructsGroup},
                                              {"recognition", recognitionGroup},
                                              {"log", logGroup},
                                              {"threads", threadsGroup},
                                              {"document size", documentSizeGroup},
                                              {"control count", controlCountGroup},
                                              {"kinds", kindsGroup}};
  return all;
}

}  // namespace benchmarks
