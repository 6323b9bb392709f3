#include "core/registry.hpp"

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

#include "filter/property_names.hpp"

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace detail {

bool Registry::matches(const LdapExpression& filter, const AnyMap& properties) const {
  ++looks_;
  return filter.matches(properties);
}

Registry::RecordPtr Registry::publish(const std::shared_ptr<BundlePrivate>& bundle,
                                      const std::vector<std::string>& interfaces,
                                      AnyMap properties) {
  auto record = std::make_shared<ServiceRecord>();
  record->id = nextServiceId_++;
  record->interfaces = interfaces;
  record->properties = std::move(properties);
  record->properties[property_names::kInterfaces] = interfaces;
  record->properties[property_names::kServiceId] = record->id;
  const auto ranking = record->properties.find(property_names::kRanking);
  if (ranking != record->properties.end()) record->ranking = any_cast<int>(ranking->second);
  record->bundle = bundle;
  record->published = true;
  services_.add(record, record->properties);
  return record;
}

std::vector<Registry::RecordPtr> Registry::matching(const LdapExpression& filter) const {
  std::vector<RecordPtr> found;
  const auto& candidates = services_.candidates(filter);
  std::copy_if(candidates.begin(), candidates.end(), std::back_inserter(found),
               [&](const RecordPtr& record) { return matches(filter, record->properties); });
  return found;
}

Registry::RecordPtr Registry::best(const LdapExpression& filter) const {
  const auto& candidates = services_.candidates(filter);
  const auto found =
      std::find_if(candidates.begin(), candidates.end(),
                   [&](const RecordPtr& record) { return matches(filter, record->properties); });
  return found == candidates.end() ? nullptr : *found;
}

/// Binds the component to the services it refers to.
/// @return the first reference that nothing satisfies; null if the component is bound
const ReferenceDescription* Registry::bind(const ComponentPtr& component) {
  ++looks_;
  std::vector<RecordPtr> bound;
  for (const ReferenceDescription& reference : component->description.references) {
    bound.push_back(best(reference.filter));
    if (!bound.back()) return &reference;
  }
  for (const RecordPtr& record : bound) users_[record.get()].insert(component);
  component->bound = std::move(bound);
  return nullptr;
}

void Registry::publishSatisfied(const std::vector<ComponentPtr>& waiting) {
  // Whoever lacks a service waits under one term of the filter for it, that with the fewest others,
  // until a service with that term comes. The order is that of passes over all components.
  std::unordered_map<std::string, std::vector<ComponentPtr>> waitingFor;
  Ordered nextPass;
  for (Ordered pass(waiting.begin(), waiting.end()); !pass.empty(); pass.swap(nextPass)) {
    while (!pass.empty()) {
      const ComponentPtr component = *pass.begin();
      pass.erase(pass.begin());
      if (const ReferenceDescription* missing = bind(component)) {
        std::vector<ComponentPtr>* fewest = nullptr;
        for (const std::string& term : missing->filter.requiredTerms()) {
          std::vector<ComponentPtr>& others = waitingFor[term];
          if (!fewest || others.size() <= fewest->size()) fewest = &others;
        }
        fewest->push_back(component);
        continue;
      }
      component->record = publish(component->bundle.lock(), component->description.interfaces,
                                  component->properties);
      component->record->component = component;
      for (const std::string& term : termsOf(component->record->properties)) {
        for (ComponentPtr& other : std::exchange(waitingFor[term], {})) {
          (other->id > component->id ? pass : nextPass).insert(std::move(other));
        }
      }
    }
  }
}

void Registry::withdraw(const ComponentPtr& component, std::vector<ComponentPtr>& withdrawn) {
  if (!component->record) return;
  // No recursion: a chain of users can be as long as there are components.
  for (std::vector<ComponentPtr> stack{component}; !stack.empty();) {
    ++looks_;
    const ComponentPtr last = stack.back();
    const auto users = users_.find(last->record.get());
    if (users != users_.end() && !users->second.empty()) {
      stack.push_back(*users->second.begin());
      continue;
    }
    stack.pop_back();
    if (users != users_.end()) users_.erase(users);
    for (const RecordPtr& record : last->bound) users_[record.get()].erase(last);
    last->bound.clear();
    services_.remove(last->record, last->record->properties);
    last->record->published = false;
    last->record.reset();
    withdrawn.push_back(last);
  }
}

void Registry::clear() {
  for (const RecordPtr& record : services_.all()) record->published = false;
  services_ = {};
  users_.clear();
}

/// Walks from component to component along the references, each component once.
class Registry::CycleSearch {
 public:
  CycleSearch(const Registry& registry, const std::vector<ComponentPtr>& waiting)
      : registry_(registry) {
    for (const ComponentPtr& component : waiting) waiting_.add(component, component->properties);
  }

  void from(const ComponentPtr& start) {
    visit(start);
    while (!path_.empty()) {
      Step& last = path_.back();
      if (last.next == last.ways.size()) {
        places_[last.component.get()] = kDone;
        path_.pop_back();
        continue;
      }
      const ComponentPtr target = last.ways[last.next++].target;
      const auto place = places_.find(target.get());
      if (place == places_.end()) {
        visit(target);
      } else if (place->second != kDone && told_.count(last.component.get()) == 0) {
        tell(place->second, start->bundle.lock());
      }
    }
  }

  std::vector<Cycle> take() { return std::move(found_); }

 private:
  static constexpr std::size_t kDone = std::numeric_limits<std::size_t>::max();

  struct Way {
    const std::string* reference;
    ComponentPtr target;
  };
  struct Step {
    ComponentPtr component;
    std::vector<Way> ways;
    std::size_t next = 0;  ///< behind the way taken
  };

  void visit(const ComponentPtr& component) {
    if (!places_.emplace(component.get(), path_.size()).second) return;
    Step step{component, {}};
    for (const ReferenceDescription& reference : component->description.references) {
      for (const ComponentPtr& target : waiting_.candidates(reference.filter)) {
        if (registry_.matches(reference.filter, target->properties)) {
          step.ways.push_back({&reference.name, target});
        }
      }
    }
    path_.push_back(std::move(step));
  }

  /// Tells of the path from `first` on, which leads back there, as seen by the bundle's first
  /// component on it.
  void tell(std::size_t first, const std::shared_ptr<BundlePrivate>& bundle) {
    const std::size_t length = path_.size() - first;
    std::size_t start = kDone;
    for (std::size_t i = first; i < path_.size(); ++i) {
      const Component& component = *path_[i].component;
      told_.insert(&component);
      if (component.bundle.lock() != bundle) continue;
      if (start == kDone || component.id < path_[start].component->id) start = i;
    }
    if (start == kDone) return;
    std::string way = path_[start].component->description.name;
    for (std::size_t i = 0; i < length; ++i) {
      const Step& step = path_[first + (start - first + i) % length];
      const Way& taken = step.ways[step.next - 1];
      way += " (reference " + *taken.reference + ") -> " + taken.target->description.name;
    }
    found_.push_back({path_[start].component.get(), std::move(way)});
  }

  const Registry& registry_;
  TermIndex<ComponentPtr, ByNumber> waiting_;
  std::vector<Step> path_;
  std::unordered_map<const Component*, std::size_t> places_;  ///< on the path, or kDone
  std::set<const Component*> told_;
  std::vector<Cycle> found_;
};

std::vector<Registry::Cycle> Registry::cycles(const std::vector<ComponentPtr>& waiting,
                                              const std::shared_ptr<BundlePrivate>& bundle) const {
  CycleSearch search(*this, waiting);
  for (const ComponentPtr& component : waiting) {
    if (component->bundle.lock() == bundle) search.from(component);
  }
  return search.take();
}

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
