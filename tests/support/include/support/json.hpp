#pragma once

/// @file
/// JSON values for tests, written as JSON text.

#include <string_view>

#include "reference_host/json/parse.hpp"

namespace test_support {

inline foundation::json::Value json(std::string_view text) {
  return reference_host::json::parse(text);
}

}  // namespace test_support
