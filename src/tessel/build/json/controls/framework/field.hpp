#pragma once

/// @file
/// A field: a JSON key, the records around it, and the setter that it feeds.

#include <string>
#include <type_traits>

#include "foundation/json.hpp"
#include "framework/diagnostics.hpp"
#include "framework/json_access.hpp"

namespace tessel::build::json::controls::framework {

struct Field {
  std::string key;
  const char* foundText;  ///< the record before the member is read
  const char* setText;    ///< the record after the setter has returned
};

/// Hands the member under the field's key to the setter, as the type that the setter takes. A
/// missing key is passed over in silence.
/// @throws std::runtime_error the conversion error, for a member of the wrong type.
template <typename Element, typename Impl, typename Result, typename Argument>
void applyField(const foundation::json::Value& fields, const Element& element, const Field& field,
                Result (Impl::*setter)(Argument)) {
  const foundation::json::Value* member = foundation::json::find_member(fields, field.key);
  if (member == nullptr) return;
  logDiagnostic(field.foundText);
  (element.get()->*setter)(readAs<std::decay_t<Argument>>(*member));
  logDiagnostic(field.setText);
}

}  // namespace tessel::build::json::controls::framework
