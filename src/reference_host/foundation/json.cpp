#include "foundation/json.hpp"

#include <cstddef>
#include <iterator>
#include <stdexcept>
#include <type_traits>

#include "reference_host/json/read_watch.hpp"

namespace foundation::json {

using reference_host::json::ReadObserver;
using reference_host::json::ReadWatch;

namespace {

/// Values nested no deeper than this are destroyed by recursion, which is quick; what lies deeper
/// is taken apart in place.
constexpr int kRecursiveLevels = 100;

bool hasElements(const Value& value) noexcept {
  if (const auto* elements = value.get_if<Value::Array>()) return !elements->empty();
  if (const auto* members = value.get_if<Value::Object>()) return !members->empty();
  return false;
}

/// The first element of a container that is not empty.
Value& firstOf(Value& container) noexcept {
  if (auto* elements = container.get_if<Value::Array>()) return elements->front();
  return container.get_if<Value::Object>()->begin()->second;
}

/// Moves the last element out of a container that is not empty.
Value takeLast(Value& container) noexcept {
  if (auto* elements = container.get_if<Value::Array>()) {
    Value last(std::move(elements->back()));
    elements->pop_back();
    return last;
  }
  auto& members = *container.get_if<Value::Object>();
  const auto position = std::prev(members.end());
  Value last(std::move(position->second));
  members.erase(position);
  return last;
}

bool hasOneElement(const Value& container) noexcept {
  if (const auto* elements = container.get_if<Value::Array>()) return elements->size() == 1;
  return container.get_if<Value::Object>()->size() == 1;
}

/// Destroys the elements of a container at any depth without recursion and without memory of its
/// own: on the way down, the first element of a child gives its place to the parent.
void dismantle(Value& root) noexcept {
  Value current(std::move(root));
  std::size_t depth = 0;
  while (depth > 0 || hasElements(current)) {
    if (depth > 0 && hasOneElement(current)) {
      Value parent(std::move(firstOf(current)));
      current = std::move(parent);
      --depth;
      continue;
    }
    Value element = takeLast(current);
    while (hasElements(element)) {
      Value first(std::move(firstOf(element)));
      firstOf(element) = std::move(current);
      current = std::move(element);
      element = std::move(first);
      ++depth;
    }
  }
}

/// How many containers the calling thread is destroying, one inside the other. (Where the library
/// was loaded while the program runs, the system takes memory for it at a thread's first use.)
thread_local int containersBeingDestroyed = 0;

void tellAsked(const Value& holder, const std::string& key, const Value* answer) {
  if (ReadObserver* observer = ReadWatch::observer()) observer->asked(holder, key, answer);
}

void tellCopied(const Value& original, const Value& copy) {
  if (!detail::mayBeWatched()) return;
  if (ReadObserver* observer = ReadWatch::observer()) observer->copied(original, copy);
}

}  // namespace

Value::Value(const Value& other) {
  struct Pending {
    const Value* source;
    Value* target;
  };
  std::vector<Pending> pending;
  const auto copy = [&pending](const Value& source, Value& target) {
    if (const auto* elements = source.get_if<Array>()) {
      target.held_.emplace<Array>(elements->size());
    } else if (source.get_if<Object>() != nullptr) {
      target.held_.emplace<Object>();
    } else {
      target.held_ = source.held_;
    }
    if (hasElements(source)) pending.push_back({&source, &target});
  };

  copy(other, *this);
  while (!pending.empty()) {
    const auto [source, target] = pending.back();
    pending.pop_back();
    if (const auto* elements = source->get_if<Array>()) {
      auto place = target->get_if<Array>()->begin();
      for (const Value& element : *elements) copy(element, *place++);
    } else {
      auto& members = *target->get_if<Object>();
      for (const auto& [key, member] : *source->get_if<Object>()) {
        copy(member, members.emplace_hint(members.end(), key, Value())->second);
      }
    }
  }
  tellCopied(other, *this);
}

Value::Value(Value&& other) noexcept = default;

Value& Value::operator=(const Value& other) {
  if (this != &other) {
    *this = Value(other);
    tellCopied(other, *this);
  }
  return *this;
}

Value& Value::operator=(Value&& other) noexcept {
  // Taken out before the old content goes.
  Value taken(std::move(other));
  held_ = std::move(taken.held_);
  return *this;
}

void Value::destroyContainer() noexcept {
  if (!hasElements(*this)) return;
  int& depth = containersBeingDestroyed;
  if (depth == kRecursiveLevels) return dismantle(*this);
  ++depth;
  held_.emplace<Undefined>();
  --depth;
}

bool Value::hasOwnProperty(const std::string& key) const {
  return find_member(*this, key) != nullptr;
}

const Value& Value::operator[](const char* key) const {
  return (*this)[std::string(key)];
}

const Value& Value::operator[](const std::string& key) const {
  static const Value undefined;
  const auto* members = get_if<Object>();
  const auto member = members == nullptr ? Object::const_iterator() : members->find(key);
  const bool found = members != nullptr && member != members->end();
  const Value& answer = found ? member->second : undefined;
  if (detail::mayBeWatched()) tellAsked(*this, key, &answer);
  return answer;
}

Value& Value::operator[](const char* key) {
  if (get_if<Undefined>() != nullptr) held_.emplace<Object>();
  if (auto* members = get_if<Object>()) {
    Value& answer = (*members)[key];
    if (detail::mayBeWatched()) tellAsked(*this, key, &answer);
    return answer;
  }
  if (detail::mayBeWatched()) tellAsked(*this, key, nullptr);
  const char* const name = std::visit(
      [](const auto& held) { return traits<std::decay_t<decltype(held)>>::name; }, held_);
  throw std::runtime_error(std::string("invalid conversion: ") + name + " to " +
                           traits<Object>::name);
}

bool operator==(const Value& left, const Value& right) {
  std::vector<std::pair<const Value*, const Value*>> pending;
  const auto same = [&pending](const Value& a, const Value& b) {
    if (a.held_.index() != b.held_.index()) return false;
    if (const auto* elements = a.get_if<Value::Array>()) {
      if (elements->size() != b.get_if<Value::Array>()->size()) return false;
    } else if (const auto* members = a.get_if<Value::Object>()) {
      if (members->size() != b.get_if<Value::Object>()->size()) return false;
    } else {
      return a.held_ == b.held_;
    }
    if (hasElements(a)) pending.emplace_back(&a, &b);
    return true;
  };

  if (!same(left, right)) return false;
  while (!pending.empty()) {
    const auto [a, b] = pending.back();
    pending.pop_back();
    if (const auto* elements = a->get_if<Value::Array>()) {
      auto other = b->get_if<Value::Array>()->begin();
      for (const Value& element : *elements) {
        if (!same(element, *other++)) return false;
      }
    } else {
      auto other = b->get_if<Value::Object>()->begin();
      for (const auto& [key, member] : *a->get_if<Value::Object>()) {
        if (key != other->first || !same(member, other->second)) return false;
        ++other;
      }
    }
  }
  return true;
}

namespace detail {

std::atomic<unsigned> readWatches{0};

const Value* findWatched(const Value& value, const std::string& key) {
  const auto* members = value.get_if<Value::Object>();
  const auto member = members == nullptr ? Value::Object::const_iterator() : members->find(key);
  const bool found = members != nullptr && member != members->end();
  const Value* const answer = found ? &member->second : nullptr;
  tellAsked(value, key, answer);
  return answer;
}

}  // namespace detail

const char* const traits<Undefined>::name = "undefined";
const char* const traits<Null>::name = "null";
const char* const traits<bool>::name = "bool";
const char* const traits<double>::name = "double";
const char* const traits<std::string>::name = "string";
const char* const traits<std::vector<Value>>::name = "array";
const char* const traits<std::map<std::string, Value>>::name = "object";
const char* const traits<float>::name = "float";
const char* const traits<std::int64_t>::name = "int64";
const char* const traits<std::uint64_t>::name = "uint64";

}  // namespace foundation::json
