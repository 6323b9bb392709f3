// A bundle with one builder of its own.

#include "support/dial_builder.hpp"

#include "registration.hpp"

#include "entry_points.inc"
