#pragma once

/// @file
/// The baseline of a build: the same elements, made by straight-line code.

#include <string>

#include "document/gxzero.hpp"
#include "gx/zero.hpp"
#include "plain_controls.hpp"

namespace benchmarks {

/// Creates the elements that the control's builder creates, with the same calls to the host in the
/// same order and the same conversions; but every value is at hand, no JSON is looked at and
/// nothing is logged.
document::gxzero::Node createElements(const gx::zero::Model& model,
                                      const PlainControl<std::string>& control);

}  // namespace benchmarks
