#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cppmicroservices/AnyMap.h"
#include "filter/number.hpp"

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace detail {

/// A parsed LDAP filter; `BundleContext::GetServiceReferences` documents what it means.
///
/// A term is one thing that properties say or a filter asks for, "name is value", as text. Whatever
/// matches a filter has all its required terms.
class LdapExpression {
 public:
  /// @throws std::invalid_argument naming the position, from 1, and what is wrong there
  static LdapExpression parse(std::string_view filter);
  /// Matches services that offer the interface (any, if empty) and match the filter, if it is not
  /// empty.
  /// @throws std::invalid_argument as `parse`
  static LdapExpression offering(const std::string& interface, const std::string& filter);

  bool matches(const AnyMap& properties) const;
  std::vector<std::string> requiredTerms() const;

 private:
  friend class LdapParser;

  enum class Kind : std::uint8_t { kAnd, kOr, kNot, kEqual, kGreater, kLess, kApproximate };

  bool matchesValue(const Any& value) const;
  bool matchesText(const std::string& text) const;
  bool matchesNumber(const Number& number) const;
  bool matchesWildcards(std::string_view text) const;

  Kind kind_ = Kind::kAnd;
  std::vector<LdapExpression> operands_;  ///< of kAnd, kOr and kNot
  std::string name_;                      ///< of a comparison, like the rest
  std::vector<std::string> pieces_;       ///< the value, cut at each `*`
  std::optional<Number> number_;          ///< the value, if it is a number
};

/// The terms of all properties that a term can be made of.
std::vector<std::string> termsOf(const AnyMap& properties);

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
