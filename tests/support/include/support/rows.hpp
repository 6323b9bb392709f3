#pragma once

/// @file
/// Builds written out by hand: a second reading of what the contract says.

#include <string>
#include <string_view>
#include <vector>

#include "contract/outcome.hpp"
#include "foundation/json.hpp"

namespace test_support {

using contract::Records;

/// Stands for the dump of the object among the log records.
inline const std::string kDump = "(the object itself)";

/// An object, and what a build of it has to leave behind. Elements and objects are JSON text.
class Row {
 public:
  explicit Row(std::string description) : description_(std::move(description)) {}

  /// The whole object; then `node` and all log records are given as well.
  Row& object(std::string_view json);
  Row& value(foundation::json::Value object);
  /// The "data" of a control that has nothing else; then `record` is enough, and the log records
  /// begin after those for "context" and "data".
  Row& data(std::string_view json);

  /// The node; when the build fails, what is left of it.
  Row& node(std::string_view json);
  /// The record's properties, without its class.
  Row& record(std::string_view json);
  /// A further root of the model.
  Row& stray(std::string_view json);
  Row& error(std::string text);
  Row& records(Records texts);
  /// The log record of a recognition, which has to claim the object.
  Row& asked(std::string text);

  /// Holds a builder to the row.
  void expectOf(const std::string& builder) const;

 private:
  foundation::json::Value objectFor(const contract::Kind& kind) const;
  contract::Outcome expected(const contract::Kind& kind, const foundation::json::Value& json) const;

  std::string description_;
  foundation::json::Value object_;
  std::string data_;
  foundation::json::Value node_;
  foundation::json::Value record_ = foundation::json::Value::Object();
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
