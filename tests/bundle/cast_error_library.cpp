// A library that hides everything but one function, as the bundle does, and lets the framework's
// cast error leave it.

#include "framework/element_sequence.hpp"

extern "C" __attribute__((visibility("default"))) void tessel_test_throw_cast_error() {
  tessel::build::json::controls::framework::requireModelElement(gx::zero::ValueMeta(1.5));
}
