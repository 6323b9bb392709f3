/// @file
/// What the counting of instructions runs under callgrind: each measured action once, after
/// everything that happens on first use alone has happened. Callgrind writes a file for each
/// action, named after it; the program itself writes a line for each to standard output: of how
/// many units the action consists, a space, its name.

#include <valgrind/callgrind.h>

#include <cstddef>
#include <cstdio>
#include <string>
#include <variant>
#include <vector>

#include "corpus.hpp"
#include "document/gxzero.hpp"
#include "document_generator.hpp"
#include "gx/zero.hpp"
#include "peers.hpp"
#include "reference_host/json/parse.hpp"
#include "support/all_builders.hpp"

namespace {

using contract::Kind;
using foundation::json::Value;

constexpr std::size_t kControlsOfKind = 20;

/// @param action takes which run it is, 0 or 1; the second is counted.
template <typename Action>
void count(const std::string& name, std::size_t units, const Action& action) {
  action(0);
  CALLGRIND_START_INSTRUMENTATION;
  CALLGRIND_ZERO_STATS;
  action(1);
  CALLGRIND_DUMP_STATS_AT(name.c_str());
  CALLGRIND_STOP_INSTRUMENTATION;
  std::printf("%zu %s\n", units, name.c_str());
}

void countParse(const std::string& what, const std::string& document) {
  std::vector<Value> parsed(2);
  count("parse: " + what, 1,
        [&](std::size_t run) { parsed[run] = reference_host::json::parse(document); });
}

/// A whole import, and what other libraries make of the same text; each destroys what it made.
void countImport(const std::string& document) {
  count("import", 1, [&](std::size_t) { benchmarks::importText(document); });
  count("peer: nlohmann-json, parse", 1, [&](std::size_t) { benchmarks::nlohmannParse(document); });
  benchmarks::SimdjsonPeer simdjson(document);
  count("peer: simdjson, DOM", 1, [&](std::size_t) { simdjson.parse(); });
  count("peer: RapidJSON, reader to the host's value", 1,
        [&](std::size_t) { benchmarks::rapidjsonToValue(document); });
}

/// Each builder by itself, so that one more leaves the counts of the others alone.
void countQuestions(const std::string& builder, const std::string& what,
                    const std::vector<const Value*>& objects) {
  for (const test_support::BuilderService& each : test_support::allBuilderServices()) {
    if (each.name != builder) continue;
    const auto ask = [&objects](const auto& service) {
      for (const Value* object : objects) service->canBuild(*object);
    };
    count("question to the " + contract::kindOf(builder).name + ": " + what, objects.size(),
          [&](std::size_t) { std::visit(ask, each.service); });
  }
}

/// Models and the place for the nodes are made beforehand: the count is of builds alone.
void countBuild(const std::string& what, const std::vector<benchmarks::ClaimedObject>& objects) {
  const gx::zero::Model models[] = {gx::zero::Model::create(), gx::zero::Model::create()};
  std::vector<document::gxzero::Node> nodes;
  nodes.reserve(2 * objects.size());
  count("build: " + what, objects.size(), [&](std::size_t run) {
    for (const auto& object : objects) {
      nodes.push_back(object.builder->build(models[run], *object.json));
    }
  });
}

void countKind(const Kind& kind) {
  std::vector<benchmarks::ClaimedObject> claimed;
  std::vector<const Value*> objects;
  const auto controls = benchmarks::controlsOf(kind, kControlsOfKind);
  for (const auto& control : controls) {
    claimed.push_back(control->claimed().front());
    objects.push_back(claimed.back().json);
  }
  countQuestions(kind.builder, "its own", objects);
  countBuild(kind.name, claimed);
}

/// What a builder is asked of most often: objects of nobody, and controls of other types. The line
/// is an element here, so that it is offered like what it holds.
void countOthers() {
  const benchmarks::Corpus corpus('[' + benchmarks::DocumentGenerator().strangerLine() + ']');
  const Value generic = reference_host::json::parse(
      R"({"className": "LumoControlNode", "context": {"type": "none"}})");
  for (const Kind* kind : benchmarks::measuredKinds()) {
    countQuestions(kind->builder, "nothing of ours", corpus.strangers());
    countQuestions(kind->builder, "another type",
                   std::vector<const Value*>(kControlsOfKind, &generic));
  }
}

}  // namespace

int main() {
  countParse("a document of 20,000 bytes", benchmarks::generateDocument(20000));
  countImport(benchmarks::generateDocument(100000));
  for (const Kind* kind : benchmarks::measuredKinds()) {
    countKind(*kind);
  }
  countOthers();
}
