#pragma once

/// @file
/// The thirteen builders, as the tests have them.

#include "support/all_builders.hpp"

namespace fuzz {

using test_support::allBuilders;

}  // namespace fuzz
