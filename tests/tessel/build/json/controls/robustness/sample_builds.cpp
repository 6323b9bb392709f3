#include "sample_builds.hpp"

#include <algorithm>
#include <cctype>

#include "contract/samples.hpp"
#include "support/all_builders.hpp"

namespace tessel::build::json::controls {

namespace {

void add(const contract::Kind& kind, const std::vector<contract::Sample>& objects,
         std::vector<SampleBuild>& samples) {
  for (const contract::Sample& object : objects) {
    std::string name;
    for (const char letter : object.description) {
      if (std::isalnum(static_cast<unsigned char>(letter)) != 0) name += letter;
    }
    samples.push_back({name, test_support::builderOf(kind.builder), object.json,
                       contract::expectedAnswer(kind, object.json),
                       contract::expectedBuild(kind, object.json),
                       kind.rule == contract::Rule::kHostClassName});
  }
}

}  // namespace

std::vector<SampleBuild> successfulSamples() {
  std::vector<SampleBuild> samples;
  for (const auto& kind : contract::kinds()) add(kind, contract::wholeObjects(kind), samples);
  return samples;
}

std::vector<SampleBuild> allSamples() {
  std::vector<SampleBuild> samples = successfulSamples();
  for (const auto& kind : contract::kinds()) add(kind, contract::failingObjects(kind), samples);
  return samples;
}

bool areAmong(const contract::Records& records, const contract::Records& all) {
  auto next = all.begin();
  for (const std::string& record : records) {
    next = std::find(next, all.end(), record);
    if (next == all.end()) return false;
    ++next;
  }
  return true;
}

}  // namespace tessel::build::json::controls
