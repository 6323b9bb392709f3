/// @file
/// A value made of the fuzzer's choices, offered to every builder directly.
///
/// Holds the code to this: each builder answers, throws, records and builds exactly what the
/// contract says, with diagnostics on; the same without a record with diagnostics off; at most one
/// builder claims a value; a value that is not claimed changes nothing; and what an outcome notes
/// as an offence does not occur: a value that is changed, a handle that is left behind, and so on.

#include <cstddef>
#include <cstdint>
#include <sstream>

#include "check.hpp"
#include "contract/outcome.hpp"
#include "gx/zero.hpp"
#include "reference_host/logging/log_capture.hpp"
#include "support/all_builders.hpp"
#include "support/opened_records.hpp"
#include "value_maker.hpp"

namespace {

using contract::Outcome;
using foundation::json::Value;
using fuzz::require;
using reference_host::importer::NamedBuilder;
using test_support::allBuilders;

void requireOutcome(const Outcome& actual, const Outcome& expected) {
  if (actual == expected) return;
  std::ostringstream actualText;
  std::ostringstream expectedText;
  actualText << actual;
  expectedText << expected;
  fuzz::requireEqual(actualText.str(), expectedText.str(), "a builder does what the contract says");
  require(false, "a builder does what the contract says, to the last bit");
}

Outcome withoutRecords(Outcome outcome) {
  outcome.records.clear();
  return outcome;
}

/// What all builders made of a value together.
struct Verdict {
  std::size_t claims = 0;
  bool thrown = false;  ///< by a recognition
  Outcome built;
};

/// Offers the value to every builder, and compares what each does with what the contract says.
Verdict offer(const Value& json) {
  static const auto& opened = *new test_support::OpenedRecordCounter;
  Verdict verdict;
  for (const NamedBuilder& builder : allBuilders()) {
    const contract::Kind& kind = contract::kindOf(builder.name());
    const Outcome answer = contract::expectedAnswer(kind, json);
    const std::size_t before = opened.count();
    requireOutcome(contract::silentAnswerOf(builder, json), withoutRecords(answer));
    require(opened.count() == before, "with diagnostics off, no record is opened");
    requireOutcome(contract::answerOf(builder, json), answer);
    verdict.thrown = verdict.thrown || !answer.error.empty();
    if (!answer.claims) continue;
    ++verdict.claims;
    verdict.built = contract::expectedBuild(kind, json);
    const std::size_t beforeBuild = opened.count();
    requireOutcome(contract::silentBuildOf(builder, json), withoutRecords(verdict.built));
    require(opened.count() == beforeBuild, "with diagnostics off, no record is opened");
    requireOutcome(contract::buildOf(builder, json), verdict.built);
  }
  require(verdict.claims <= 1, "at most one builder claims a value");
  return verdict;
}

/// The importer's walk comes to the same.
void requireImport(const Value& json, const Verdict& verdict) {
  const auto model = gx::zero::Model::create();
  const auto result = reference_host::importer::importDocument(allBuilders(), model, json);
  if (result.summary.claimed == 0) {
    require(model.get()->getElements().empty(), "what is not claimed changes nothing");
  }
  if (verdict.claims == 0 && !verdict.thrown) return;
  require(result.summary.objects == 1, "the walk does not go into what is claimed or refused");
  require(result.summary.claimed == verdict.claims, "the import claims what a builder claims");
  require(result.errors.empty() || verdict.claims == 0 ||
              result.errors.front().message == verdict.built.error,
          "the import tells the builder's error");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::ByteReader bytes(data, size);
  const Value json = fuzz::makeOffer(bytes);
  requireImport(json, offer(json));
  return 0;
}
