#pragma once

/// @file
/// Builds of every kind that go through and ones that fail, with what they come to by contract:
/// what a hostile log, a full memory or another thread does must not depend on it.

#include <ostream>
#include <string>
#include <vector>

#include "contract/outcome.hpp"
#include "foundation/json.hpp"
#include "reference_host/importer/importer.hpp"

namespace tessel::build::json::controls {

/// A builder, an object that it claims, and what it has to make of the object.
struct SampleBuild {
  std::string name;  ///< letters and digits
  reference_host::importer::NamedBuilder builder;
  foundation::json::Value json;
  contract::Outcome answer;  ///< of `canBuild`
  contract::Outcome built;   ///< of `build`
  /// Whether the host's class name test recognises the object; it takes a text of its own.
  bool recognizedByHost;

  friend std::ostream& operator<<(std::ostream& stream, const SampleBuild& sample) {
    return stream << sample.name;
  }
};

/// All kinds, each with every field and with texts that need memory of their own.
std::vector<SampleBuild> successfulSamples();
/// These, and the same failing with the conversion error at the last thing that they read.
std::vector<SampleBuild> allSamples();

/// Whether records are some of others, each whole, and in their order.
bool areAmong(const contract::Records& records, const contract::Records& all);

}  // namespace tessel::build::json::controls
