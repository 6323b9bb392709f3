#pragma once

/// @file
/// All problems of one object that a builder claims.

#include <vector>

#include "reference_host/diagnosis/offered_object.hpp"
#include "reference_host/diagnosis/problem.hpp"

namespace reference_host::diagnosis {

/// The problems of an object that the builder claims: errors, and then warnings of what it does not
/// read. It goes on behind a wrong member as if that were right.
std::vector<Problem> checkControl(const OfferedObject& control);

}  // namespace reference_host::diagnosis
