#pragma once

#include <cstddef>
#include <memory>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "core/component.hpp"
#include "core/service_record.hpp"
#include "filter/ldap_expression.hpp"
#include "filter/term_index.hpp"

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace detail {

/// Which services are published, and which of them each component uses. Runs no code of bundles;
/// the framework's lock guards it.
///
/// What an operation costs grows with the components it is about and with the services that a
/// filter's terms leave over, not with all that there are.
class Registry {
 public:
  using RecordPtr = std::shared_ptr<ServiceRecord>;
  using ComponentPtr = std::shared_ptr<Component>;

  RecordPtr publish(const std::shared_ptr<BundlePrivate>& bundle,
                    const std::vector<std::string>& interfaces, AnyMap properties);
  /// Those that match, the best one first: by rank, then the one published first.
  std::vector<RecordPtr> matching(const LdapExpression& filter) const;
  /// The best of those that match; null if none does.
  RecordPtr best(const LdapExpression& filter) const;

  /// Publishes those of the waiting components whose references are satisfied, by services that
  /// this publishes too. One that has a lower number goes before another where it can.
  void publishSatisfied(const std::vector<ComponentPtr>& waiting);
  /// Takes a component's service back and, before it, those of the components that use it; appends
  /// all of these in that order.
  void withdraw(const ComponentPtr& component, std::vector<ComponentPtr>& withdrawn);
  /// Takes all services back.
  void clear();

  /// A component whose references lead back to it, and the way there.
  struct Cycle {
    const Component* component;
    std::string way;
  };
  /// The cycles among the waiting components that go through one of `bundle`. A component is told
  /// of once.
  std::vector<Cycle> cycles(const std::vector<ComponentPtr>& waiting,
                            const std::shared_ptr<BundlePrivate>& bundle) const;

  /// How many filters were evaluated, and components examined, so far.
  std::size_t looks() const { return looks_; }

 private:
  struct Better {
    bool operator()(const RecordPtr& left, const RecordPtr& right) const {
      return left->ranking != right->ranking ? left->ranking > right->ranking
                                             : left->id < right->id;
    }
  };
  struct ByNumber {
    bool operator()(const ComponentPtr& left, const ComponentPtr& right) const {
      return left->id < right->id;
    }
  };
  using Ordered = std::set<ComponentPtr, ByNumber>;
  class CycleSearch;

  const ReferenceDescription* bind(const ComponentPtr& component);
  bool matches(const LdapExpression& filter, const AnyMap& properties) const;

  TermIndex<RecordPtr, Better> services_;
  std::unordered_map<const ServiceRecord*, Ordered> users_;  ///< the components bound to a service
  long nextServiceId_ = 1;
  mutable std::size_t looks_ = 0;
};

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
