#include "support/rows.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "contract/samples.hpp"
#include "support/all_builders.hpp"
#include "support/json.hpp"

namespace test_support {

using contract::Kind;
using contract::Outcome;
using foundation::json::Value;

Value Row::objectFor(const Kind& kind) const {
  return data_.empty() ? object_ : contract::objectWith(kind, data_);
}

Outcome Row::expected(const Kind& kind, const Value& object) const {
  Outcome outcome;
  outcome.error = error_;
  outcome.records = records_;
  Value node = node_;
  if (!data_.empty()) {
    Records records = {kind.start, kDump};
    if (kind.shape == contract::Shape::kGuarded) {
      records.insert(records.end(),
                     {"Found the context property", "Found the context.data property"});
    }
    outcome.records.insert(outcome.records.begin(), records.begin(), records.end());
    Value dataObject = dataObject_;
    dataObject["class"] = contract::qualifiedDataClass(kind.dataClass);
    node["class"] = contract::nodeClass(kind.node);
    node["position"]["class"] = contract::nodeClass("LumoControlPosition");
    node[kind.slot.c_str()] = dataObject;
  }
  std::replace(outcome.records.begin(), outcome.records.end(), kDump,
               foundation::json::pretty_print(object));
  outcome.roots = {node};
  outcome.roots.insert(outcome.roots.end(), strays_.begin(), strays_.end());
  return outcome;
}

void Row::expectOf(const std::string& builder) const {
  SCOPED_TRACE(description_);
  const Kind& kind = contract::kindOf(builder);
  const Value object = objectFor(kind);
  if (!asked_.empty()) {
    Outcome answer;
    answer.claims = true;
    answer.records = {asked_};
    EXPECT_EQ(contract::answerOf(builderOf(builder), object), answer);
  }
  Outcome built = contract::buildOf(builderOf(builder), object);
  built.created.clear();  // the contract's business
  EXPECT_EQ(built, expected(kind, object));
}

void expectRows(const std::string& builder, const std::vector<Row>& rows) {
  for (const Row& row : rows) row.expectOf(builder);
}

void expectClaims(const std::string& builder, const std::vector<std::string>& claimed,
                  const std::vector<std::string>& unclaimed) {
  for (const auto& [texts, claimant] :
       {std::pair(&claimed, builder), std::pair(&unclaimed, std::string())}) {
    for (const std::string& text : *texts) {
      SCOPED_TRACE(text);
      for (const auto& each : allBuilders()) {
        const Outcome answer = contract::answerOf(each, json(text));
        EXPECT_EQ(answer.claims, each.name() == claimant) << each.name();
        EXPECT_EQ(answer.error, "") << each.name();
      }
    }
  }
}

}  // namespace test_support
