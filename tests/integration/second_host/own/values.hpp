#pragma once

/// @file
/// JSON values of the second host: an alternative is kept in a `std::any`, and asking for a member
/// that is not there is an error, which tells the operators apart.

#include <any>
#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace foundation::json {

class Value;
struct Undefined {};
struct Null {};
using Members = std::map<std::string, Value>;
using List = std::vector<Value>;

template <typename T>
struct traits;
template <>
struct traits<Undefined> {
  static inline const std::string name = "Nothing";
};
template <>
struct traits<Null> {
  static inline const std::string name = "Nil";
};
template <>
struct traits<bool> {
  static inline const std::string name = "Flag";
};
template <>
struct traits<double> {
  static inline const std::string name = "Real";
};
template <>
struct traits<std::string> {
  static inline const std::string name = "Text";
};
template <>
struct traits<List> {
  static inline const std::string name = "List";
};
template <>
struct traits<Members> {
  static inline const std::string name = "Members";
};
template <>
struct traits<float> {
  static inline const std::string name = "Single";
};
template <>
struct traits<std::int64_t> {
  static inline const std::string name = "Signed";
};
template <>
struct traits<std::uint64_t> {
  static inline const std::string name = "Unsigned";
};

class Value {
 public:
  Value() : held_(Undefined()) {}
  Value(const char* text) : held_(std::string(text)) {}
  template <typename T, typename = decltype(traits<T>::name)>
  Value(T held) : held_(std::move(held)) {}

  template <typename T>
  const T* held() const {
    return std::any_cast<T>(&held_);
  }

  Value operator[](const char* key) const { return (*this)[std::string(key)]; }
  Value operator[](const std::string& key) const {
    const Value* found = find(key);
    if (found == nullptr) throw std::out_of_range("no " + key + " to read");
    return *found;
  }
  const Value* find(const std::string& key) const {
    const auto found = members("read").find(key);
    return found == members("read").end() ? nullptr : &found->second;
  }
  Value& operator[](const char* key) {
    members("changed");
    auto& all = *std::any_cast<Members>(&held_);
    const auto found = all.find(key);
    if (found == all.end()) throw std::out_of_range(std::string("no ") + key + " to change");
    return found->second;
  }

 private:
  const Members& members(const std::string& what) const {
    if (const auto* all = held<Members>()) return *all;
    throw std::logic_error("no members to be " + what);
  }

  std::any held_;
};

inline std::string pretty_print(const Value& value) {
  return value.held<Members>() != nullptr ? "<members>" : "<value>";
}

}  // namespace foundation::json
