#pragma once

/// @file
/// The diagnostic records of an action, for comparison with the expected sequence.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "reference_host/logging/log_capture.hpp"

namespace test_support {

using Records = std::vector<std::string>;

/// The texts of the records that an action writes; each has to be at severity 8.
template <typename Action>
Records recordsOf(const Action& action) {
  reference_host::logging::LogCapture capture;
  action();
  Records texts;
  for (const auto& record : capture.records()) {
    EXPECT_EQ(record.severity, 8) << record.text;
    texts.push_back(record.text);
  }
  return texts;
}

}  // namespace test_support
