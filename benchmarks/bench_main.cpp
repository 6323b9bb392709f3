/// @file
/// Times imports and their parts beside what they are compared with, prints the table, and writes
/// it as JSON. Exit status: 0 all goals met, 1 a goal missed, 2 wrong usage or a failure.

#include <benchmark/benchmark.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "groups.hpp"
#include "report.hpp"

namespace {

struct Options {
  std::vector<std::string> only;
  std::size_t extraRounds = 0;
  std::string json;
};

std::vector<std::string> groupNames() {
  std::vector<std::string> names;
  for (const benchmarks::GroupEntry& entry : benchmarks::groups()) names.emplace_back(entry.name);
  return names;
}

bool isWanted(const std::string& name, const std::vector<std::string>& only) {
  return only.empty() || std::find(only.begin(), only.end(), name) != only.end();
}

int run(const Options& options) {
  std::vector<benchmarks::GroupResult> results;
  bool met = true;
  benchmarks::printHeading();
  for (const benchmarks::GroupEntry& entry : benchmarks::groups()) {
    if (!isWanted(entry.name, options.only)) continue;
    const benchmarks::Group group = entry.make();
    results.push_back(benchmarks::measure(group, group.rounds + options.extraRounds));
    benchmarks::print(results.back());
    for (const benchmarks::RowResult& row : results.back().rows) met = met && row.met;
  }
  if (!options.json.empty()) benchmarks::writeJson(options.json, results);
  return met ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    Options options;
    CLI::App app("Times imports and their parts beside what they are compared with.");
    app.add_option("--only", options.only, "Groups to run; all of them if not given")
        ->check(CLI::IsMember(groupNames()));
    app.add_option("--extra-rounds", options.extraRounds, "Rounds beyond those of each group");
    app.add_option("--json", options.json, "File for everything that was measured");
    try {
      app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
      return app.exit(error) == 0 ? 0 : 2;
    }
    return run(options);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "tessel_bench: %s\n", error.what());
    return 2;
  }
}
