#pragma once

/// @file
/// Counting models, to find handles that are left behind.

#include <cstddef>

#include "foundation/export.hpp"

namespace reference_host {

/// How many models there are in the process: those that a handle on them or on one of their
/// elements keeps alive.
TESSEL_HOST_API std::size_t countLiveModels() noexcept;

}  // namespace reference_host
