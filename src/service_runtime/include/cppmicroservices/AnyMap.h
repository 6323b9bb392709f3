#pragma once

/// @file
/// A map from names to values.

#include <map>
#include <ostream>
#include <string>

#include "cppmicroservices/Any.h"

namespace cppmicroservices {
inline namespace embedded_v1 {

namespace detail {

/// Orders names bytewise, without regard to the case of ASCII letters.
struct US_ABI_EXPORT LessWithoutCase {
  bool operator()(const std::string& left, const std::string& right) const;
};

}  // namespace detail

/// A map from names, whose ASCII case does not matter, to values.
using AnyMap = std::map<std::string, Any, detail::LessWithoutCase>;

/// Writes a JSON object on one line.
US_ABI_EXPORT std::ostream& any_value_to_json(std::ostream& os, const AnyMap& values);

}  // namespace embedded_v1
}  // namespace cppmicroservices
