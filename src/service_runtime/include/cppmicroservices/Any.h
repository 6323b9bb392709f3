#pragma once

/// @file
/// A value of any copyable type, as service properties and manifest headers hold it.

#include <map>
#include <memory>
#include <ostream>
#include <sstream>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

#include "cppmicroservices/FrameworkExport.h"

namespace cppmicroservices {
inline namespace embedded_v1 {

class Any;

/// Thrown by `any_cast` and `ref_any_cast` when the value has another type than the one asked for.
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

template <class T, class = void>
struct IsComparable : std::false_type {};
template <class T>
struct IsComparable<T, std::void_t<decltype(std::declval<const T&>() == std::declval<const T&>())>>
    : std::true_type {};

/// Appends `text` as a JSON string, quotes included.
US_Framework_EXPORT void writeJsonText(std::ostream& os, const std::string& text);

[[noreturn]] US_Framework_EXPORT void throwBadAnyCast(const std::type_info& held,
                                                      const std::type_info& wanted);

}  // namespace detail

/// Writes a value as text; overloads below serve containers. A type without `operator<<` gives no
/// text.
template <class T>
std::ostream& any_value_to_string(std::ostream& os, const T& value);
/// Writes a value as JSON on one line.
template <class T>
std::ostream& any_value_to_json(std::ostream& os, const T& value);
template <class T>
std::ostream& any_value_to_string(std::ostream& os, const std::vector<T>& values);
template <class T>
std::ostream& any_value_to_json(std::ostream& os, const std::vector<T>& values);

/// Holds a value of any copyable type, or nothing.
class Any {
 public:
  Any() noexcept = default;

  /// Holds a copy of `value` (or takes it over); an array decays to a pointer.
  template <class T, class = std::enable_if_t<!std::is_same_v<std::decay_t<T>, Any>>>
  Any(T&& value)  // NOLINT(google-explicit-constructor): the API converts implicitly
      : content_(std::make_unique<Holder<std::decay_t<T>>>(std::forward<T>(value))) {}

  Any(const Any& other) : content_(other.content_ ? other.content_->clone() : nullptr) {}
  Any(Any&& other) noexcept = default;
  Any& operator=(const Any& other) {
    Any copy(other);
    content_.swap(copy.content_);
    return *this;
  }
  Any& operator=(Any&& other) noexcept = default;
  ~Any() = default;

  /// True if both hold nothing, or equal values of one type that can be compared.
  bool operator==(const Any& other) const {
    if (!content_ || !other.content_) return !content_ && !other.content_;
    return content_->equals(other);
  }
  bool operator!=(const Any& other) const { return !(*this == other); }

  bool Empty() const noexcept { return !content_; }
  /// The type of the value held; `typeid(void)` when there is none.
  const std::type_info& Type() const noexcept { return content_ ? content_->type() : typeid(void); }

  /// The value as text. @throws std::logic_error if there is none.
  US_Framework_EXPORT std::string ToString() const;
  /// The value as text; empty if there is none.
  std::string ToStringNoExcept() const { return content_ ? content_->toString() : std::string(); }
  /// The value as JSON on one line; `null` if there is none.
  std::string ToJSON() const { return content_ ? content_->toJson() : std::string("null"); }

 private:
  struct Content {
    virtual ~Content() = default;
    virtual std::unique_ptr<Content> clone() const = 0;
    virtual const std::type_info& type() const noexcept = 0;
    virtual bool equals(const Any& other) const = 0;
    virtual std::string toString() const = 0;
    virtual std::string toJson() const = 0;
  };

  template <class T>
  struct Holder final : Content {
    explicit Holder(const T& initial) : value(initial) {}
    explicit Holder(T&& initial) : value(std::move(initial)) {}
    std::unique_ptr<Content> clone() const override { return std::make_unique<Holder>(value); }
    const std::type_info& type() const noexcept override { return typeid(T); }
    bool equals(const Any& other) const override;
    std::string toString() const override {
      std::ostringstream text;
      any_value_to_string(text, value);
      return text.str();
    }
    std::string toJson() const override {
      std::ostringstream text;
      any_value_to_json(text, value);
      return text.str();
    }
    T value;
  };

  template <class T>
  friend T* any_cast(Any* operand) noexcept;
  template <class T>
  friend const T* any_cast(const Any* operand) noexcept;

  std::unique_ptr<Content> content_;
};

/// The value held, or null if it has another type.
template <class T>
T* any_cast(Any* operand) noexcept {
  if (!operand || operand->Type() != typeid(T)) return nullptr;
  return &static_cast<Any::Holder<T>*>(operand->content_.get())->value;
}

/// @copydoc any_cast(Any*)
template <class T>
const T* any_cast(const Any* operand) noexcept {
  if (!operand || operand->Type() != typeid(T)) return nullptr;
  return &static_cast<const Any::Holder<T>*>(operand->content_.get())->value;
}

/// A reference to the value held. @throws BadAnyCastException if it has another type.
template <class T>
const T& ref_any_cast(const Any& operand) {
  const T* value = any_cast<T>(&operand);
  if (value != nullptr) return *value;
  detail::throwBadAnyCast(operand.Type(), typeid(T));
}

/// @copydoc ref_any_cast(const Any&)
template <class T>
T& ref_any_cast(Any& operand) {
  T* value = any_cast<T>(&operand);
  if (value != nullptr) return *value;
  detail::throwBadAnyCast(operand.Type(), typeid(T));
}

/// A copy of the value held. @throws BadAnyCastException if it has another type.
template <class T>
T any_cast(const Any& operand) {
  return ref_any_cast<T>(operand);
}

template <class T>
bool Any::Holder<T>::equals(const Any& other) const {
  if constexpr (detail::IsComparable<T>::value) {
    const T* otherValue = any_cast<T>(&other);
    return otherValue && value == *otherValue;
  } else {
    return this == other.content_.get();
  }
}

template <class T>
std::ostream& any_value_to_string(std::ostream& os, const T& value) {
  if constexpr (std::is_same_v<T, Any>) {
    os << value.ToString();
  } else if constexpr (detail::IsStreamable<T>::value) {
    os << value;
  }
  return os;
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
std::ostream& any_value_to_string(std::ostream& os, const std::vector<T>& values) {
  const char* separator = "[";
  if (values.empty()) os << separator;
  for (const auto& value : values) {
    os << separator;
    any_value_to_string(os, value);
    separator = ",";
  }
  return os << "]";
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
