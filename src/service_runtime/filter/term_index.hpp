#pragma once

#include <set>
#include <string>
#include <unordered_map>

#include "cppmicroservices/AnyMap.h"
#include "filter/ldap_expression.hpp"

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace detail {

/// Items found by what their properties say, so that a filter need not be evaluated for all of
/// them.
/// @tparam Less the order that they are found in
template <class Item, class Less>
class TermIndex {
 public:
  using Items = std::set<Item, Less>;

  void add(const Item& item, const AnyMap& properties) {
    all_.insert(item);
    for (const std::string& term : termsOf(properties)) byTerm_[term].insert(item);
  }

  /// @param properties the same as when the item was added
  void remove(const Item& item, const AnyMap& properties) {
    all_.erase(item);
    for (const std::string& term : termsOf(properties)) {
      const auto found = byTerm_.find(term);
      if (found == byTerm_.end()) continue;
      found->second.erase(item);
      if (found->second.empty()) byTerm_.erase(found);
    }
  }

  /// Few items with all of those among them that match the filter.
  const Items& candidates(const LdapExpression& filter) const {
    static const Items kNone;
    const Items* fewest = &all_;
    for (const std::string& term : filter.requiredTerms()) {
      const auto found = byTerm_.find(term);
      if (found == byTerm_.end()) return kNone;
      if (found->second.size() < fewest->size()) fewest = &found->second;
    }
    return *fewest;
  }

  const Items& all() const { return all_; }

 private:
  Items all_;
  std::unordered_map<std::string, Items> byTerm_;
};

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
