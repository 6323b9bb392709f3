#pragma once

/// @file
/// The tool's two output streams: results, and everything else.

#include <chrono>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tessel_tool {

/// Standard output, or a file, does not take the results, for example because the disk is full or
/// the reader of a pipe has gone. `what()` is the system's reason.
class OutputError : public std::runtime_error {
 public:
  /// With the reason that `errno` tells.
  explicit OutputError(std::string where);

  /// What does not take them.
  const std::string& where() const noexcept { return where_; }

 private:
  std::string where_;
};

/// The message where memory does not suffice. Short enough to be put in any string without memory.
inline constexpr const char* kOutOfMemory = "out of memory";

/// Writes a result to standard output, or to the file that takes them, and sees to it that it
/// arrives.
/// @throws OutputError
void writeResult(std::string_view text);

/// While it lives, results go to a file instead of standard output; no two live at a time. They are
/// written beside the file and take its place when they are complete, so that it may be an input,
/// and is left as it was where something fails or somebody stops the tool. Links to it stay. What
/// is no ordinary file, such as a device, is written directly.
class ResultFile {
 public:
  /// @throws OutputError
  explicit ResultFile(std::string path);
  /// Leaves nothing of results that are not complete.
  ~ResultFile();
  ResultFile(const ResultFile&) = delete;
  ResultFile& operator=(const ResultFile&) = delete;

  /// All results have been written. @throws OutputError
  void complete();

 private:
  std::string path_;     // as given
  std::string written_;  // the file beside it; empty where there is none, or none any more
  std::string target_;   // what it is to be renamed to; empty where it stays
};

/// Writes "tessel: " and the message to standard error, as one line.
void complain(std::string_view message) noexcept;

/// Writes "tessel: subject: reason" to standard error. A subject that is empty, as a path may be,
/// is shown as "".
void complain(std::string_view subject, std::string_view reason) noexcept;

/// The line on a terminal that says how far a long import has come. Where standard error is no
/// terminal, or one whose lines cannot be erased, it shows nothing.
class ProgressLine {
 public:
  /// @param wanted whether to show anything at all.
  explicit ProgressLine(bool wanted);
  /// Leaves the terminal's line empty.
  ~ProgressLine();
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  /// Empties the line, so that something else can be written to the terminal.
  void erase() noexcept;
  /// Shows the counts, unless it has done so a moment ago.
  void show(std::size_t documents, std::size_t failed);

 private:
  using Clock = std::chrono::steady_clock;

  bool enabled_;
  bool visible_ = false;
  Clock::time_point nextShow_;
};

}  // namespace tessel_tool
