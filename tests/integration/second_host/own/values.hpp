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

/// The name of an alternative.
template <typename T>
struct traits {
  static const std::string name;
};
template <>
inline const std::string traits<Undefined>::name = "Nothing";
template <>
inline const std::string traits<Null>::name = "Nil";
template <>
inline const std::string traits<bool>::name = "Flag";
template <>
inline const std::string traits<double>::name = "Real";
template <>
inline const std::string traits<std::string>::name = "Text";
template <>
inline const std::string traits<List>::name = "List";
template <>
inline const std::string traits<Members>::name = "Members";
template <>
inline const std::string traits<float>::name = "Single";
template <>
inline const std::string traits<std::int64_t>::name = "Signed";
template <>
inline const std::string traits<std::uint64_t>::name = "Unsigned";

template <typename T>
constexpr bool kIsAlternative =
    std::disjunction_v<std::is_same<T, Undefined>, std::is_same<T, Null>, std::is_same<T, bool>,
                       std::is_same<T, double>, std::is_same<T, std::string>, std::is_same<T, List>,
                       std::is_same<T, Members>, std::is_same<T, float>,
                       std::is_same<T, std::int64_t>, std::is_same<T, std::uint64_t>>;

class Value {
 public:
  Value() : held_(Undefined()) {}
  Value(const char* text) : held_(std::string(text)) {}
  template <typename T, typename = std::enable_if_t<kIsAlternative<T>>>
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
