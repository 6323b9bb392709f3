#pragma once

/// @file
/// A map from names to values, with or without regard to the case of the names.

#include <cstdint>
#include <initializer_list>
#include <map>
#include <string>
#include <unordered_map>
#include <utility>

#include "cppmicroservices/Any.h"

namespace cppmicroservices {
inline namespace embedded_v1 {

/// The kinds of `AnyMap` and its common types.
struct any_map {
  enum map_type : std::uint8_t { ORDERED_MAP, UNORDERED_MAP, UNORDERED_MAP_CASEINSENSITIVE_KEYS };

  using key_type = std::string;
  using mapped_type = Any;
  using value_type = std::pair<const key_type, mapped_type>;
  using ordered_any_map = std::map<std::string, Any>;
  using unordered_any_map = std::unordered_map<std::string, Any>;
};

namespace detail {

/// Orders names bytewise, or bytewise after folding the ASCII letters to lower case.
struct US_Framework_EXPORT KeyLess {
  bool foldCase = false;
  bool operator()(const std::string& left, const std::string& right) const;
};

}  // namespace detail

/// A map from names to values. Whatever its kind, it is walked in the order of the names; the kind
/// only says whether names that differ in the case of ASCII letters are one.
class US_Framework_EXPORT AnyMap : public any_map {
  using Storage = std::map<std::string, Any, detail::KeyLess>;

 public:
  using iterator = Storage::iterator;
  using const_iterator = Storage::const_iterator;
  using size_type = Storage::size_type;

  AnyMap(std::initializer_list<value_type> values = {});
  explicit AnyMap(map_type type, std::initializer_list<value_type> values = {});
  AnyMap(const ordered_any_map& values);    // NOLINT(google-explicit-constructor)
  AnyMap(const unordered_any_map& values);  // NOLINT(google-explicit-constructor)

  map_type GetType() const { return type_; }

  iterator begin() { return values_.begin(); }
  iterator end() { return values_.end(); }
  const_iterator begin() const { return values_.begin(); }
  const_iterator end() const { return values_.end(); }
  const_iterator cbegin() const { return values_.cbegin(); }
  const_iterator cend() const { return values_.cend(); }

  bool empty() const { return values_.empty(); }
  size_type size() const { return values_.size(); }
  size_type count(const key_type& key) const { return values_.count(key); }
  const_iterator find(const key_type& key) const { return values_.find(key); }
  /// @throws std::out_of_range if there is no such name.
  const mapped_type& at(const key_type& key) const { return values_.at(key); }
  mapped_type& at(const key_type& key) { return values_.at(key); }
  mapped_type& operator[](const key_type& key) { return values_[key]; }

  void clear() { values_.clear(); }
  size_type erase(const key_type& key) { return values_.erase(key); }
  std::pair<iterator, bool> insert(const value_type& value) { return values_.insert(value); }
  template <class... Args>
  std::pair<iterator, bool> emplace(Args&&... args) {
    return values_.emplace(std::forward<Args>(args)...);
  }

  /// True if both have the same names with equal values; the kind does not matter.
  bool operator==(const AnyMap& other) const;
  bool operator!=(const AnyMap& other) const { return !(*this == other); }

 private:
  map_type type_;
  Storage values_;
};

/// Writes `{name : value, ...}`.
US_Framework_EXPORT std::ostream& any_value_to_string(std::ostream& os, const AnyMap& values);
/// Writes a JSON object on one line.
US_Framework_EXPORT std::ostream& any_value_to_json(std::ostream& os, const AnyMap& values);

}  // namespace embedded_v1
}  // namespace cppmicroservices
