/// @file
/// A value made of the fuzzer's choices, offered to every builder directly.
///
/// Holds the code to this: each builder answers, throws, records and builds exactly what the
/// contract's table says, with diagnostics on; the same without a record with diagnostics off; at
/// most one builder claims a value; a value that is not claimed changes nothing; the value itself
/// is never changed; every element is asked for with the nil uuid; no handle is left behind.

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string>
#include <typeinfo>

#include "fuzz/builders.hpp"
#include "fuzz/check.hpp"
#include "fuzz/expectation.hpp"
#include "fuzz/value_maker.hpp"
#include "gx/zero.hpp"
#include "reference_host/export/export.hpp"
#include "reference_host/json/parse.hpp"
#include "reference_host/logging/log_capture.hpp"

namespace {

using foundation::json::Value;
using fuzz::Outcome;
using fuzz::require;
using fuzz::requireEqual;
using reference_host::importer::NamedBuilder;
using reference_host::logging::LogCapture;

/// Whether the two are the same bit by bit: other than for `==`, what is not a number is itself.
bool same(const Value& left, const Value& right) {
  const auto sameNumber = [&](auto type) {
    using Number = decltype(type);
    const auto* one = left.get_if<Number>();
    const auto* other = right.get_if<Number>();
    return one != nullptr && other != nullptr && std::memcmp(one, other, sizeof(Number)) == 0;
  };
  if (left == right || sameNumber(0.0) || sameNumber(0.0F)) return true;
  if (const auto* elements = left.get_if<Value::Array>()) {
    const auto* others = right.get_if<Value::Array>();
    return others != nullptr &&
           std::equal(elements->begin(), elements->end(), others->begin(), others->end(), same);
  }
  const auto* members = left.get_if<Value::Object>();
  const auto* others = right.get_if<Value::Object>();
  return members != nullptr && others != nullptr &&
         std::equal(members->begin(), members->end(), others->begin(), others->end(),
                    [](const auto& one, const auto& other) {
                      return one.first == other.first && same(one.second, other.second);
                    });
}

/// What the action throws; only the conversion error may leave a builder.
template <typename Action>
std::string errorOf(const Action& action) {
  try {
    action();
  } catch (const std::runtime_error& error) {
    require(typeid(error) == typeid(std::runtime_error), "what is thrown is a plain runtime_error");
    return error.what();
  }
  return {};
}

Outcome answerOf(const NamedBuilder& builder, const Value& json) {
  Outcome outcome;
  outcome.error = errorOf([&] { outcome.claims = builder.canBuild(json); });
  return outcome;
}

Outcome buildOf(const NamedBuilder& builder, const Value& json) {
  const auto model = gx::zero::Model::create();
  Outcome outcome;
  outcome.error = errorOf([&] {
    const auto node = builder.build(model, json);
    require(static_cast<bool>(node), "a build gives a node");
    require(node.get()->getHandleCount() == 1, "the result is the only handle on the node");
    require(model.get()->getHeldElementCount() == 1, "and the only one on any element");
    require(model.get()->getElements().front().get() == node.get(), "the node is made first");
  });
  require(model.get()->getHeldElementCount() == 0, "no handle is left behind");
  for (const auto& element : model.get()->getElements()) {
    require(element->getRequestedUuid().is_nil(), "every element is asked for with the nil uuid");
  }
  for (const auto& root : model.get()->getRoots()) {
    outcome.roots.push_back(reference_host::json::parse(reference_host::exporting::toJson(root)));
  }
  return outcome;
}

std::string shown(const Outcome& outcome) {
  std::string text = outcome.claims ? "claimed " : "";
  text += "error: " + outcome.error + "\nrecords:\n";
  for (const std::string& record : outcome.records) text += "  " + record + "\n";
  return text + "roots: " + foundation::json::pretty_print(outcome.roots);
}

/// What all builders made of a value together.
struct Verdict {
  std::size_t claims = 0;
  bool thrown = false;  ///< by a recognition
  Outcome built;
};

/// Offers the value to every builder, and compares what each does with what the contract says.
/// @param capture what collects the records; null with diagnostics off, when there are none.
Verdict offer(const Value& json, LogCapture* capture) {
  const auto requireOutcome = [capture](Outcome actual, Outcome expected) {
    if (capture != nullptr) actual.records = capture->takeTexts();
    if (capture == nullptr) expected.records.clear();
    requireEqual(shown(actual), shown(expected), "a builder does what the contract says");
  };
  Verdict verdict;
  for (std::size_t i = 0; i < fuzz::kinds().size(); ++i) {
    const fuzz::Kind& kind = fuzz::kinds()[i];
    const NamedBuilder& builder = fuzz::allBuilders()[i];
    requireEqual(builder.name(), kind.builder, "the table is in the manifest's order");
    const Outcome answer = fuzz::expectedAnswer(kind, json);
    requireOutcome(answerOf(builder, json), answer);
    verdict.thrown = verdict.thrown || !answer.error.empty();
    if (!answer.claims) continue;
    ++verdict.claims;
    verdict.built = fuzz::expectedBuild(kind, json);
    requireOutcome(buildOf(builder, json), verdict.built);
  }
  require(verdict.claims <= 1, "at most one builder claims a value");
  return verdict;
}

/// The importer's walk comes to the same.
void requireImport(const Value& json, const Verdict& verdict) {
  const auto model = gx::zero::Model::create();
  const auto result = reference_host::importer::importDocument(fuzz::allBuilders(), model, json);
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
  static const auto& opened = *new reference_host::logging::OpenedRecordCounter;
  fuzz::ByteReader bytes(data, size);
  const Value json = fuzz::makeOffer(bytes);
  const Value before = json;
  const std::size_t openedBefore = opened.count();
  const Verdict verdict = offer(json, nullptr);
  requireImport(json, verdict);
  require(opened.count() == openedBefore, "with diagnostics off, no record is opened");
  LogCapture capture;
  offer(json, &capture);
  require(same(json, before), "the value is not changed");
  return 0;
}
