#pragma once

/// @file
/// Collecting the diagnostic records that one thread writes.

#include <cstddef>
#include <string>
#include <vector>

#include "foundation/export.hpp"

namespace reference_host::logging {

/// The severity of diagnostic records, and the number of their bit in the enabled-level word.
constexpr int kDiagnosticSeverity = 8;
constexpr unsigned kDiagnosticLevelBit = 3;

struct CapturedRecord {
  int severity;
  std::string text;
};

/// While it lives, diagnostics are on and the records that the calling thread writes are collected.
///
/// Each thread may have captures of its own at the same time. Of several captures on one thread
/// each collects every record; they may end in any order. Records of a thread that has no capture
/// are not opened for the captures' sake. When the last capture of the process ends, the diagnostic
/// bit of the level word is as it was before the first; no other bit is touched. From the first
/// capture on, a record that no sink takes is dropped; Boost.Log no longer writes it to the
/// console.
///
/// A capture belongs to the thread that makes it: it is read and destroyed there.
class TESSEL_HOST_API LogCapture {
 public:
  LogCapture();
  ~LogCapture();
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;

  /// The records so far, in the order in which they were pushed.
  const std::vector<CapturedRecord>& records() const noexcept { return records_; }
  /// False once there was no memory to keep a record; the builders pass over that in silence.
  bool isComplete() const noexcept { return complete_; }
  /// The texts of the records so far; the capture starts over with none.
  std::vector<std::string> takeTexts();

 private:
  friend class CaptureSink;

  std::vector<CapturedRecord> records_;
  bool complete_ = true;
  LogCapture* outer_;  // the next older capture of this thread
};

}  // namespace reference_host::logging
