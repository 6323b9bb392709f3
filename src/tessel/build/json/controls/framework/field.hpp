#pragma once

/// @file
/// A field: a JSON key, the setter it feeds, and the records around it.

#include <string>
#include <type_traits>

#include "foundation/json.hpp"
#include "framework/diagnostics.hpp"
#include "framework/json_access.hpp"

namespace tessel::build::json::controls::framework {

/// Hands the member under the key to the setter, as the type that the setter takes. A missing key
/// is passed over in silence.
/// @param foundText the record before the member is read.
/// @param setText the record after the setter has returned.
/// @throws std::runtime_error the conversion error, for a member of the wrong type.
template <typename Element, typename Impl, typename Result, typename Argument>
void applyField(const foundation::json::Value& fields, const Element& element,
                const std::string& key, Result (Impl::*setter)(Argument), const char* foundText,
                const char* setText) {
  const foundation::json::Value* member = foundation::json::find_member(fields, key);
  if (member == nullptr) return;
  logDiagnostic(foundText);
  (element.get()->*setter)(readAs<std::decay_t<Argument>>(*member));
  logDiagnostic(setText);
}

}  // namespace tessel::build::json::controls::framework
