#pragma once

/// @file
/// A value of any copyable type, as service properties hold it.

#include <any>
#include <ostream>
#include <sstream>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

#include "cppmicroservices/GlobalConfig.h"

namespace cppmicroservices {
inline namespace embedded_v1 {

/// Thrown by `any_cast` when the value has another type than the one asked for.
class BadAnyCastException : public std::bad_cast {
 public:
  explicit BadAnyCastException(std::string message) : message_(std::move(message)) {}
  const char* what() const noexcept override { return message_.c_str(); }

 private:
  std::string message_;
};

namespace detail {

template <class T, class = void>
struct IsStreamable : std::false_type {};
template <class T>
struct IsStreamable<
    T, std::void_t<decltype(std::declval<std::ostream&>() << std::declval<const T&>())>>
    : std::true_type {};

/// Writes `text` as a JSON string, quotes included.
US_ABI_EXPORT void writeJsonText(std::ostream& os, const std::string& text);

[[noreturn]] US_ABI_EXPORT void throwBadAnyCast(const std::type_info& held,
                                                const std::type_info& wanted);

}  // namespace detail

/// Writes a value as JSON on one line; overloads serve containers. A type without `operator<<`
/// writes nothing.
template <class T>
std::ostream& any_value_to_json(std::ostream& os, const T& value);
template <class T>
std::ostream& any_value_to_json(std::ostream& os, const std::vector<T>& values);

/// Holds a value of any copyable type, or nothing.
class Any {
 public:
  Any() noexcept = default;

  /// Holds a copy of `value` (or takes it over); an array decays to a pointer.
  template <class T, class = std::enable_if_t<!std::is_same_v<std::decay_t<T>, Any>>>
  Any(T&& value)  // NOLINT(google-explicit-constructor): the API converts implicitly
      : content_(std::forward<T>(value)), writers_(&kWriters<std::decay_t<T>>) {}

  bool Empty() const noexcept { return !content_.has_value(); }
  /// The type of the value held; `typeid(void)` when there is none.
  const std::type_info& Type() const noexcept { return content_.type(); }

  /// The value as text, empty for a type without `operator<<`.
  /// @throws std::logic_error if there is no value
  US_ABI_EXPORT std::string ToString() const;
  /// The value as text; empty if there is none.
  std::string ToStringNoExcept() const { return Empty() ? std::string() : written(writers_->text); }
  /// The value as JSON on one line; `null` if there is none.
  std::string ToJSON() const { return Empty() ? std::string("null") : written(writers_->json); }

 private:
  using Writer = void(std::ostream&, const std::any&);
  /// What std::any does not keep of a type.
  struct Writers {
    Writer* text;
    Writer* json;
  };
  template <class T>
  static void writeText(std::ostream& os, const std::any& value) {
    if constexpr (detail::IsStreamable<T>::value) os << *std::any_cast<T>(&value);
  }
  template <class T>
  static void writeJson(std::ostream& os, const std::any& value) {
    any_value_to_json(os, *std::any_cast<T>(&value));
  }
  template <class T>
  static constexpr Writers kWriters{&writeText<T>, &writeJson<T>};

  std::string written(Writer* write) const {
    std::ostringstream text;
    write(text, content_);
    return text.str();
  }

  template <class T>
  friend const T* any_cast(const Any* operand) noexcept;

  std::any content_;
  const Writers* writers_ = nullptr;
};

/// The value held, or null if it has another type.
template <class T>
const T* any_cast(const Any* operand) noexcept {
  return operand ? std::any_cast<T>(&operand->content_) : nullptr;
}

/// A copy of the value held. @throws BadAnyCastException if it has another type.
template <class T>
T any_cast(const Any& operand) {
  const T* value = any_cast<T>(&operand);
  if (value != nullptr) return *value;
  detail::throwBadAnyCast(operand.Type(), typeid(T));
}

template <class T>
std::ostream& any_value_to_json(std::ostream& os, const T& value) {
  if constexpr (std::is_same_v<T, Any>) {
    os << value.ToJSON();
  } else if constexpr (std::is_same_v<T, bool>) {
    os << (value ? "true" : "false");
  } else if constexpr (std::is_convertible_v<T, std::string>) {
    detail::writeJsonText(os, value);
  } else if constexpr (detail::IsStreamable<T>::value) {
    os << value;
  }
  return os;
}

template <class T>
std::ostream& any_value_to_json(std::ostream& os, const std::vector<T>& values) {
  const char* separator = "[";
  if (values.empty()) os << separator;
  for (const auto& value : values) {
    os << separator;
    any_value_to_json(os, value);
    separator = ",";
  }
  return os << "]";
}

}  // namespace embedded_v1
}  // namespace cppmicroservices
