#pragma once

#include <vector>

#include "foundation/json.hpp"
#include "reference_host/diagnosis/offered_object.hpp"
#include "reference_host/diagnosis/problem.hpp"

namespace reference_host::diagnosis {

/// Warnings of what the builder that claims an object does not read in it: members without which it
/// builds the same, and values that it passes over.
/// @param corrected the object with its errors made right: the builder builds it.
std::vector<Problem> unreadMembersOf(const OfferedObject& control,
                                     const foundation::json::Value& corrected);

}  // namespace reference_host::diagnosis
