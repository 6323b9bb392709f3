#include "sample_builds.hpp"

#include <cctype>
#include <cstddef>
#include <stdexcept>

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
                       contract::expectedAnswer(kind, object.json).records,
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

const SampleBuild& sampleOf(const std::string& builder) {
  static const std::vector<SampleBuild> samples = successfulSamples();
  for (const SampleBuild& sample : samples) {
    if (sample.builder.name() == builder) return sample;
  }
  throw std::invalid_argument(builder);
}

bool areAmong(const contract::Records& records, const contract::Records& all) {
  std::size_t next = 0;
  for (const std::string& record : records) {
    while (next < all.size() && all[next] != record) ++next;
    if (next == all.size()) return false;
    ++next;
  }
  return true;
}

}  // namespace tessel::build::json::controls
