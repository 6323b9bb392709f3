#pragma once

/// @file
/// The eleven kinds of control, each described in its own test file.

#include <string>
#include <vector>

#include "foundation/json.hpp"
#include "support/control_kind.hpp"

namespace tessel::build::json::controls {

test_support::ControlKind buttonKind();
test_support::ControlKind checkBoxKind();
test_support::ControlKind colorPickerKind();
test_support::ControlKind comboBoxKind();
test_support::ControlKind datePickerKind();
/// With a default value that is text.
test_support::ControlKind editFieldKind();
/// With a default value that is a number.
test_support::ControlKind numericEditFieldKind();
test_support::ControlKind fileBrowserKind();
test_support::ControlKind rangeSliderKind();
test_support::ControlKind sliderKind();
test_support::ControlKind spinnerKind();
test_support::ControlKind stateButtonKind();

std::vector<test_support::ControlKind> allKinds();

/// What a builder answers: "yes", "no", or the text of what it throws.
std::string answerOf(const test_support::ControlKind& kind, const foundation::json::Value& json);

/// The kinds that do not answer "no", in the order of `allKinds`; one that throws with the text:
/// "Slider", or "Slider: invalid conversion: ...".
std::vector<std::string> claimantsOf(const foundation::json::Value& json);

}  // namespace tessel::build::json::controls
