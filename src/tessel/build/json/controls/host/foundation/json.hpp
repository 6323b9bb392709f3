#pragma once

/// @file
/// The JSON value library: one value type, its member access and its pretty printer.

#include <atomic>
#include <cstdint>
#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "foundation/export.hpp"

namespace foundation::json {

/// The alternative of a value that holds nothing; a default-constructed `Value` holds it.
struct Undefined {
  friend constexpr bool operator==(Undefined, Undefined) noexcept { return true; }
};

/// JSON null.
struct Null {
  friend constexpr bool operator==(Null, Null) noexcept { return true; }
};

/// A JSON value: exactly one of ten alternatives.
///
/// Text is UTF-8. A parsed document holds every number as `double`; `float` and the two 64-bit
/// integers exist for values that a program makes.
///
/// Copying, comparing and destroying work at any nesting depth; destroying never throws.
class TESSEL_HOST_API Value {
 public:
  using Array = std::vector<Value>;
  /// Members in the order of their keys, compared byte by byte.
  using Object = std::map<std::string, Value>;

  Value() noexcept = default;
  Value(Undefined) noexcept {}
  Value(Null) noexcept : held_(Null()) {}
  Value(bool boolean) noexcept : held_(boolean) {}
  Value(double number) noexcept : held_(number) {}
  Value(std::string text) noexcept : held_(std::move(text)) {}
  Value(const char* text) : held_(std::string(text)) {}
  Value(Array elements) noexcept;
  Value(Object members) noexcept;
  Value(float number) noexcept : held_(number) {}
  Value(std::int64_t integer) noexcept : held_(integer) {}
  Value(std::uint64_t integer) noexcept : held_(integer) {}

  Value(const Value& other);
  Value(Value&& other) noexcept;
  Value& operator=(const Value& other);
  /// The other may lie inside this value.
  Value& operator=(Value&& other) noexcept;
  ~Value() {
    if (isContainer()) destroyContainer();
  }

  /// The held alternative if it is exactly `T`, else null. Nothing is converted.
  template <typename T>
  const T* get_if() const noexcept {
    return std::get_if<T>(&held_);
  }
  template <typename T>
  T* get_if() noexcept {
    return std::get_if<T>(&held_);
  }

  /// Makes this hold a `T` made of the arguments, which are used up before what it held goes.
  template <typename T, typename... Arguments>
  T& emplace(Arguments&&... arguments) {
    if constexpr (sizeof...(Arguments) == 0 && std::is_nothrow_default_constructible_v<T>) {
      return held_.template emplace<T>();
    } else {
      return held_.template emplace<T>(T(std::forward<Arguments>(arguments)...));
    }
  }

  /// True when this is an object that has the member; false for every other alternative.
  bool hasOwnProperty(const std::string& key) const;

  /// The member under the key; an Undefined value when there is none or this is no object.
  const Value& operator[](const char* key) const;
  const Value& operator[](const std::string& key) const;

  /// The member under the key, inserted as Undefined when missing. An Undefined value becomes an
  /// object first.
  /// @throws std::runtime_error "invalid conversion: A to object" when this holds anything else.
  Value& operator[](const char* key);

  /// Equal alternatives with equal content; numbers of different alternatives are not equal.
  friend TESSEL_HOST_API bool operator==(const Value& left, const Value& right);
  friend bool operator!=(const Value& left, const Value& right) { return !(left == right); }

 private:
  bool isContainer() const noexcept {
    return std::holds_alternative<Array>(held_) || std::holds_alternative<Object>(held_);
  }
  void destroyContainer() noexcept;

  std::variant<Undefined, Null, bool, double, std::string, Array, Object, float, std::int64_t,
               std::uint64_t>
      held_;
};

inline Value::Value(Array elements) noexcept : held_(std::move(elements)) {}
inline Value::Value(Object members) noexcept : held_(std::move(members)) {}

/// The held alternative if it is exactly `T`, else null. Nothing is converted.
template <typename T>
const T* get_if(const Value& value) noexcept {
  return value.get_if<T>();
}

namespace detail {

/// How many watches on reads there are in the process. Nearly always none: then a read costs one
/// look at this and a branch that is never taken.
TESSEL_HOST_API extern std::atomic<unsigned> readWatches;

/// `find_member` for a thread that may have a watch, which it tells.
TESSEL_HOST_API const Value* findWatched(const Value& value, const std::string& key);

inline bool mayBeWatched() noexcept {
  return readWatches.load(std::memory_order_relaxed) != 0;
}

}  // namespace detail

/// The member under the key; null when there is none or the value is no object.
inline const Value* find_member(const Value& value, const std::string& key) {
  // Asked first, so that nothing has to be kept for it over the look-up.
  if (detail::mayBeWatched()) return detail::findWatched(value, key);
  const auto* members = get_if<Value::Object>(value);
  if (members == nullptr) return nullptr;
  const auto member = members->find(key);
  return member == members->end() ? nullptr : &member->second;
}

/// The name of an alternative as it appears in "invalid conversion: A to B".
template <typename Alternative>
struct traits;

template <>
struct TESSEL_HOST_API traits<Undefined> {
  static const char* const name;  ///< `undefined`
};
template <>
struct TESSEL_HOST_API traits<Null> {
  static const char* const name;  ///< `null`
};
template <>
struct TESSEL_HOST_API traits<bool> {
  static const char* const name;  ///< `bool`
};
template <>
struct TESSEL_HOST_API traits<double> {
  static const char* const name;  ///< `double`
};
template <>
struct TESSEL_HOST_API traits<std::string> {
  static const char* const name;  ///< `string`
};
template <>
struct TESSEL_HOST_API traits<std::vector<Value>> {
  static const char* const name;  ///< `array`
};
template <>
struct TESSEL_HOST_API traits<std::map<std::string, Value>> {
  static const char* const name;  ///< `object`
};
template <>
struct TESSEL_HOST_API traits<float> {
  static const char* const name;  ///< `float`
};
template <>
struct TESSEL_HOST_API traits<std::int64_t> {
  static const char* const name;  ///< `int64`
};
template <>
struct TESSEL_HOST_API traits<std::uint64_t> {
  static const char* const name;  ///< `uint64`
};

/// The whole value as indented JSON text: two spaces a level (the indent stops growing at level
/// 50), members in the map's order, doubles in the shortest form that reads back the same.
/// Undefined and numbers that are not finite print as `null`. Works at any nesting depth.
TESSEL_HOST_API std::string pretty_print(const Value& value);

}  // namespace foundation::json
