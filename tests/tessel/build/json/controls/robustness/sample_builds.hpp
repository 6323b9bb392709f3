#pragma once

/// @file
/// Every kind of builder with objects of its own, for what has to hold whatever the kind: what
/// a hostile log, a full memory or another thread does must not depend on it.

#include <ostream>
#include <string>
#include <vector>

#include "foundation/json.hpp"
#include "reference_host/importer/importer.hpp"
#include "support/build_outcome.hpp"
#include "support/records.hpp"

namespace tessel::build::json::controls {

/// A builder, an object that it claims, and what it has to make of the object.
struct SampleBuild {
  std::string name;
  reference_host::importer::NamedBuilder builder;
  foundation::json::Value json;
  test_support::Records recognition;  ///< the records of `canBuild`
  test_support::Outcome expected;     ///< of `build`
  /// Whether the host's class name test recognises the object; it takes a text of its own.
  bool recognizedByHost;

  friend std::ostream& operator<<(std::ostream& stream, const SampleBuild& sample) {
    return stream << sample.name;
  }
};

/// All thirteen kinds, each with every field and with texts that need memory of their own; the edit
/// field with both types of default value, the task header with children.
std::vector<SampleBuild> successfulSamples();

/// The same kinds, each failing with the conversion error at the last thing that it reads.
std::vector<SampleBuild> failingSamples();

/// Both.
std::vector<SampleBuild> allSamples();

/// Whether records are some of others, each whole, and in their order.
bool areAmong(const test_support::Records& records, const test_support::Records& all);

}  // namespace tessel::build::json::controls
