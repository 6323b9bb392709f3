#pragma once

/// @file
/// A field: a JSON key, the log records before and after it is set, and the setter. The fields of a
/// builder are set by a list of calls of `optional`, `required` and `narrated`.

#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>

#include "foundation/json.hpp"
#include "framework/diagnostics.hpp"
#include "framework/json_access.hpp"

namespace tessel::build::json::controls::framework {

/// For a field that writes no record before or after.
inline constexpr std::string_view kNoRecord;

template <typename Setter = std::nullptr_t>
struct Field {
  std::string key;
  std::string_view foundText;  ///< the record before the member is read
  std::string_view setText;    ///< the record after the setter has returned
  Setter setter{};             ///< of the element's `Impl`; none for `narrated` with a body
};

Field(std::string, std::string_view, std::string_view)->Field<>;
template <typename Setter>
Field(std::string, std::string_view, std::string_view, Setter) -> Field<Setter>;

/// Calls the setter with the value, read strictly as the type that the setter takes.
template <typename Element, typename Impl, typename Result, typename Argument>
void set(const Element& element, Result (Impl::*setter)(Argument),
         const foundation::json::Value& value) {
  using Type = std::decay_t<Argument>;
  if constexpr (std::is_same_v<Type, double>) {
    (element.get()->*setter)(readDouble(value));
  } else if constexpr (std::is_same_v<Type, bool>) {
    (element.get()->*setter)(readBool(value));
  } else {
    (element.get()->*setter)(readText(value));
  }
}

/// Calls the body with the member under the field's key, between the field's two records. Does
/// nothing if the key is missing. After a failure there is no second record.
template <typename Setter, typename Body>
void narrated(const foundation::json::Value& fields, const Field<Setter>& field, const Body& body) {
  const foundation::json::Value* member = foundation::json::find_member(fields, field.key);
  if (member == nullptr) return;
  logDiagnostic(field.foundText);
  body(*member);
  logDiagnostic(field.setText);
}

/// Sets the field from the member under its key, if there is one, between the two records.
/// @throws std::runtime_error the conversion error, for a member of the wrong type.
template <typename Element, typename Setter>
void optional(const foundation::json::Value& fields, const Element& element,
              const Field<Setter>& field) {
  narrated(fields, field, [&element, &field](const foundation::json::Value& member) {
    set(element, field.setter, member);
  });
}

/// Sets the field from the member under its key, which is required. Writes no record before.
/// @throws std::runtime_error the conversion error, for a member of the wrong type; for a missing
///         one whatever the host throws, or the conversion error.
template <typename Element, typename Setter>
void required(const foundation::json::Value& fields, const Element& element,
              const Field<Setter>& field) {
  foundation::json::Value copy;
  set(element, field.setter, requiredMember(fields, field.key, copy));
  if (!field.setText.empty()) logDiagnostic(field.setText);
}

}  // namespace tessel::build::json::controls::framework
