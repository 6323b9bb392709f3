#pragma once

/// @file
/// Filters over service properties.

#include <iosfwd>
#include <memory>
#include <string>

#include "cppmicroservices/AnyMap.h"

namespace cppmicroservices {
inline namespace embedded_v1 {

class LDAPFilterData;
class ServiceReferenceBase;

/// A search filter in the text form of RFC 4515: `&`, `|` and `!` over comparisons with `=`, `>=`,
/// `<=` and `~=`; `(name=*)` asks whether the property is there, `*` inside a value stands for any
/// text, `\` takes `(`, `)`, `*` or `\` as it is and may stand before nothing else.
///
/// Texts compare bytewise, `~=` without regard to white space and ASCII case; numbers by value;
/// `true` and `false` without regard to case. Of a property with several values one has to match. A
/// property whose type does not fit the comparison does not match.
class US_Framework_EXPORT LDAPFilter {
 public:
  /// An empty filter, which matches nothing.
  LDAPFilter() = default;
  /// @throws std::invalid_argument naming the position (from 1) and what is wrong there
  LDAPFilter(const std::string& filter);  // NOLINT(google-explicit-constructor)

  /// False for an empty filter.
  explicit operator bool() const { return d != nullptr; }

  /// Whether the service's properties match; names are compared without regard to case.
  bool Match(const ServiceReferenceBase& reference) const;
  /// @copydoc Match(const ServiceReferenceBase&) const
  bool Match(const AnyMap& dictionary) const;
  /// As `Match`, with regard to the case of the names.
  bool MatchCase(const AnyMap& dictionary) const;

  /// The filter as it was given.
  std::string ToString() const;
  bool operator==(const LDAPFilter& other) const { return ToString() == other.ToString(); }

 private:
  std::shared_ptr<const LDAPFilterData> d;
};

US_Framework_EXPORT std::ostream& operator<<(std::ostream& os, const LDAPFilter& filter);

}  // namespace embedded_v1
}  // namespace cppmicroservices
