#pragma once

/// @file
/// What happens when somebody stops the tool (SIGINT, SIGTERM): whole answers only, a line on
/// standard error that says how far it came, and the end that the signal means. What is cut off all
/// the same, by a second signal or by a failure, is named.

#include <cstddef>
#include <string_view>

namespace tessel_tool {

/// From here on a signal ends the process at once where no answer is being written, and else behind
/// that answer; what was not begun is left. A second signal ends the process wherever it is.
void stopBetweenAnswers();

/// Names a file that a signal does not leave behind; null where there is none. The text of the path
/// stays until another one is named.
void removeWhenStopped(const char* path) noexcept;

/// While it lives, answers are being written; no two live at a time.
class AnswerInProgress {
 public:
  /// @param first the name of the document that is answered first.
  /// @param last that of the one answered last.
  AnswerInProgress(std::string_view first, std::string_view last) noexcept;
  /// Says on standard error what is cut off, unless the answers are complete. Ends the process if a
  /// signal came meanwhile.
  ~AnswerInProgress();
  AnswerInProgress(const AnswerInProgress&) = delete;
  AnswerInProgress& operator=(const AnswerInProgress&) = delete;

  /// The answers are written to their end.
  /// @param documents how many have been answered until now.
  /// @param last the name of the last one.
  void complete(std::size_t documents, std::string_view last) noexcept;
};

}  // namespace tessel_tool
