#pragma once

/// @file
/// Builds written out by hand: a second reading of what the contract says.

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "contract/outcome.hpp"
#include "foundation/json.hpp"
#include "support/json.hpp"

namespace test_support {

using contract::Records;

/// Stands for the dump of the object among the log records.
inline const std::string kDump = "(the object itself)";

/// An object, and what a build of it has to leave behind. Elements and objects are JSON text.
class Row {
 public:
  explicit Row(std::string description) : description_(std::move(description)) {}

  /// The whole object; then `node` and all log records are given as well.
  Row& object(std::string_view text) { return value(json(text)); }
  Row& value(foundation::json::Value object) { return with(object_, std::move(object)); }
  /// The "data" of a control that has nothing else; then `dataObject` is enough, and the log
  /// records begin after those for "context" and "data".
  Row& data(std::string_view text) { return with(data_, text); }

  /// The node; when the build fails, what is left of it.
  Row& node(std::string_view text) { return with(node_, json(text)); }
  /// The data object's properties, without its class.
  Row& dataObject(std::string_view text) { return with(dataObject_, json(text)); }
  /// A further root of the model.
  Row& stray(std::string_view text) { return with(strays_.emplace_back(), json(text)); }
  Row& error(std::string text) { return with(error_, std::move(text)); }
  Row& records(Records texts) { return with(records_, std::move(texts)); }
  /// The log record of a recognition, which has to claim the object.
  Row& asked(std::string text) { return with(asked_, std::move(text)); }

  /// Holds a builder to the row.
  void expectOf(const std::string& builder) const;

 private:
  template <typename Member, typename Given>
  Row& with(Member& member, Given&& given) {
    member = std::forward<Given>(given);
    return *this;
  }
  foundation::json::Value objectFor(const contract::Kind& kind) const;
  contract::Outcome expected(const contract::Kind& kind,
                             const foundation::json::Value& object) const;

  std::string description_;
  foundation::json::Value object_;
  std::string data_;
  foundation::json::Value node_;
  foundation::json::Value dataObject_ = foundation::json::Value::Object();
  foundation::json::Value::Array strays_;
  std::string error_;
  Records records_;
  std::string asked_;
};

void expectRows(const std::string& builder, const std::vector<Row>& rows);

/// Asks every builder, and holds them to claiming the objects of the first list by that one alone
/// and the others by none. Each is JSON text.
void expectClaims(const std::string& builder, const std::vector<std::string>& claimed,
                  const std::vector<std::string>& unclaimed);

}  // namespace test_support
