#pragma once

#include <string>

#include "cppmicroservices/AnyMap.h"

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace detail {

/// Parses a JSON object. Text becomes std::string (a leading `%`, which asks for a translation that
/// there is none of, is left out), true and false bool, an integer the first of int, long long and
/// unsigned long long that holds it, another number double, an array std::vector<Any> and an object
/// an AnyMap whose names compare without regard to case. Members and elements that are null are
/// left out.
/// @throws std::runtime_error if it is no JSON object, nests deeper than 64, or has a member twice
AnyMap parseJsonObject(const std::string& text);

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
