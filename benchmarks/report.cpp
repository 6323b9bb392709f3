#include "report.hpp"

#include <array>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <thread>

#include "json_file.hpp"

namespace benchmarks {

namespace {

const char* boundSign(Bound bound) {
  switch (bound) {
    case Bound::kAtMost:
      return "<=";
    case Bound::kAtLeast:
      return ">=";
    case Bound::kNone:
      break;
  }
  return "";
}

std::string shortNumber(double number) {
  char text[32];
  std::snprintf(text, sizeof text, number < 0.1 ? "%.4f" : "%.3f", number);
  return text;
}

nlohmann::json toJson(const RowResult& result) {
  nlohmann::json json = {{"name", result.row.name},
                         {"heldAgainst", result.row.heldAgainst},
                         {"ratio", result.ratio},
                         {"lowest", result.lowest},
                         {"highest", result.highest}};
  if (result.row.bound != Bound::kNone) {
    json["goal"] = {{"bound", boundSign(result.row.bound)}, {"ratio", result.row.goal}};
    json["met"] = result.met;
  }
  return json;
}

}  // namespace

void printHeading() {
  std::printf("%-46s %-44s %9s %9s %8s %17s %9s\n", "measured", "compared with", "ns", "ns",
              "ratio", "lowest - highest", "goal");
}

void print(const GroupResult& group) {
  std::printf("\n%s (time of one %s, %zu rounds)\n", group.name.c_str(), group.unit.c_str(),
              group.rounds.size());
  for (const RowResult& result : group.rows) {
    const bool judged = result.row.bound != Bound::kNone;
    // A ratio of more than two variants has no two times of its own.
    const auto time = [&group, derived = result.row.ratio != nullptr](std::size_t variant) {
      std::array<char, 32> text{};
      std::snprintf(text.data(), text.size(), "%.1f", group.medians[variant]);
      return derived ? std::string() : std::string(text.data());
    };
    const std::string goal =
        judged ? boundSign(result.row.bound) + (" " + shortNumber(result.row.goal)) : "";
    std::printf("  %-44s %-44s %9s %9s %8s %8s-%-8s %9s %s\n", result.row.name.c_str(),
                result.row.heldAgainst.c_str(), time(result.row.ours).c_str(),
                time(result.row.theirs).c_str(), shortNumber(result.ratio).c_str(),
                shortNumber(result.lowest).c_str(), shortNumber(result.highest).c_str(),
                goal.c_str(), judged ? (result.met ? "met" : "MISSED") : "");
  }
  std::fflush(stdout);
}

void writeJson(const std::string& path, const std::vector<GroupResult>& groups) {
  nlohmann::json all = {{"processors", std::thread::hardware_concurrency()},
                        {"compiler", TESSEL_BENCHMARK_COMPILER},
                        {"groups", nlohmann::json::array()}};
  for (const GroupResult& group : groups) {
    nlohmann::json rows = nlohmann::json::array();
    for (const RowResult& result : group.rows) rows.push_back(toJson(result));
    all["groups"].push_back({{"name", group.name},
                             {"unit", group.unit},
                             {"variants", group.variants},
                             {"nanoseconds", group.medians},
                             {"rounds", group.rounds},
                             {"rows", rows}});
  }
  writeJsonFile(path, all);
}

}  // namespace benchmarks
