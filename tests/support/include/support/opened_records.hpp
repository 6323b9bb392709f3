#pragma once

/// @file
/// Counting the records that are opened, whoever writes them.

#include <cstddef>
#include <memory>

namespace test_support {

/// Counts the records that anybody offers to the logging core while it lives, and accepts none. It
/// does not switch diagnostics on. What a `LogCapture` collects is not affected.
class OpenedRecordCounter {
 public:
  OpenedRecordCounter();
  ~OpenedRecordCounter();
  OpenedRecordCounter(const OpenedRecordCounter&) = delete;
  OpenedRecordCounter& operator=(const OpenedRecordCounter&) = delete;

  std::size_t count() const noexcept;

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace test_support
