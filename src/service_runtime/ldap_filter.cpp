#include "cppmicroservices/LDAPFilter.h"

#include <ostream>

#include "cppmicroservices/ServiceReferenceBase.h"
#include "ldap_expression.hpp"

namespace cppmicroservices {
inline namespace embedded_v1 {

class LDAPFilterData {
 public:
  explicit LDAPFilterData(const std::string& filter)
      : text(filter), expression(detail::LdapExpression::parse(filter)) {}

  const std::string text;
  const detail::LdapExpression expression;
};

LDAPFilter::LDAPFilter(const std::string& filter)
    : d(std::make_shared<const LDAPFilterData>(filter)) {}

bool LDAPFilter::Match(const ServiceReferenceBase& reference) const {
  AnyMap properties(AnyMap::UNORDERED_MAP_CASEINSENSITIVE_KEYS);
  for (const std::string& key : reference.GetPropertyKeys()) {
    properties.emplace(key, reference.GetProperty(key));
  }
  return Match(properties);
}

bool LDAPFilter::Match(const AnyMap& dictionary) const {
  return d && d->expression.matches(dictionary, /*matchCase=*/false);
}

bool LDAPFilter::MatchCase(const AnyMap& dictionary) const {
  return d && d->expression.matches(dictionary, /*matchCase=*/true);
}

std::string LDAPFilter::ToString() const {
  return d ? d->text : std::string();
}

std::ostream& operator<<(std::ostream& os, const LDAPFilter& filter) {
  return os << filter.ToString();
}

}  // namespace embedded_v1
}  // namespace cppmicroservices
