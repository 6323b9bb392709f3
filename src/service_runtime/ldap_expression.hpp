#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cppmicroservices/AnyMap.h"

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace detail {

/// A parsed LDAP filter; `LDAPFilter` documents what it means.
class LdapExpression {
 public:
  /// @throws std::invalid_argument naming the position, from 1, and what is wrong there
  static LdapExpression parse(std::string_view filter);

  /// Whether the properties match. With `matchCase` the names have to have the same case.
  bool matches(const AnyMap& properties, bool matchCase) const;

 private:
  friend class LdapParser;

  enum class Kind : std::uint8_t { kAnd, kOr, kNot, kEqual, kGreater, kLess, kApproximate };

  bool matchesValue(const Any& value) const;
  bool matchesText(const std::string& text) const;
  bool matchesNumber(long double number) const;
  bool matchesWildcards(std::string_view text) const;

  Kind kind_ = Kind::kAnd;
  std::vector<LdapExpression> operands_;  ///< of kAnd, kOr and kNot
  std::string name_;                      ///< of a comparison, like the rest
  std::vector<std::string> pieces_;       ///< the value, cut at each `*`
  std::optional<long double> number_;     ///< the value, if it is a number
};

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
