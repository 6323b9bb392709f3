#include "stop.hpp"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <new>
#include <string>
#include <thread>
#include <utility>

#include "platform.hpp"
#include "text_form.hpp"

namespace tessel_tool {

namespace {

enum class State { kBetweenAnswers, kInAnswer, kStopped };

// A handler may use them only if they need no lock.
static_assert(std::atomic<State>::is_always_lock_free && std::atomic<int>::is_always_lock_free &&
              std::atomic<bool>::is_always_lock_free &&
              std::atomic<const char*>::is_always_lock_free);
std::atomic<State> state{State::kBetweenAnswers};
std::atomic<int> stopSignal{0};
std::atomic<bool> incomplete{false};
std::atomic<const char*> unfinishedFile{nullptr};

/// What is said at the end. It changes only while an answer is in progress, when no handler reads
/// it.
std::string& lastLine() {
  static auto* const line = new std::string;  // a signal may come while the process ends
  return *line;
}

constexpr const char* kSomethingIsCutOff = "tessel: an answer is cut off\n";

/// What is said of answers that are cut off. It changes only while none is incomplete.
std::string& cutLine() {
  static auto* const line = new std::string(kSomethingIsCutOff);
  return *line;
}

void setCutLine(std::string_view first, std::string_view last) {
  std::string line = "tessel: " + (first.empty() ? R"("")" : visible(first)) + ": ";
  line += first == last ? "the answer is cut off\n" : "this answer or a later one is cut off\n";
  cutLine() = std::move(line);
}

void sayWhatIsCut() noexcept {
  if (incomplete.exchange(false)) writeFromHandler(cutLine());
}

void setLastLine(std::size_t documents, std::string_view last) {
  std::string line = canEraseLine(stderr) ? "\r\x1b[K" : "";  // the progress may be there
  line += "tessel: stopped; documents answered: " + std::to_string(documents);
  if (!last.empty()) line += ", the last one " + visible(last);
  lastLine() = line + '\n';
}

[[noreturn]] void end() noexcept {
  if (const char* const path = unfinishedFile) removeFromHandler(path);
  endBySignal(stopSignal);
}

[[noreturn]] void sayHowFarAndEnd() noexcept {
  writeFromHandler(lastLine());
  end();
}

void handleStop(int signal) {
  stopSignal = signal;
  switch (state.exchange(State::kStopped)) {
    case State::kBetweenAnswers:
      sayHowFarAndEnd();
    case State::kInAnswer:
      return;  // whoever writes it ends the process
    case State::kStopped:
      sayWhatIsCut();
      end();
  }
}

}  // namespace

void stopBetweenAnswers() {
  cutLine();
  setLastLine(0, "");
  setStopHandler(handleStop);
}

void removeWhenStopped(const char* path) noexcept {
  unfinishedFile = path;
}

AnswerInProgress::AnswerInProgress(std::string_view first, std::string_view last) noexcept {
  State before = State::kBetweenAnswers;
  if (!state.compare_exchange_strong(before, State::kInAnswer)) {
    // A handler on another thread is about to end the process.
    while (true) std::this_thread::sleep_for(std::chrono::hours(1));
  }
  try {
    setCutLine(first, last);
  } catch (const std::bad_alloc&) {
    cutLine() = kSomethingIsCutOff;  // no longer than what it held, so that it takes no memory
  }
  incomplete = true;
}

AnswerInProgress::~AnswerInProgress() {
  sayWhatIsCut();
  State before = State::kInAnswer;
  if (!state.compare_exchange_strong(before, State::kBetweenAnswers)) sayHowFarAndEnd();
}

void AnswerInProgress::complete(std::size_t documents, std::string_view last) noexcept {
  incomplete = false;
  try {
    setLastLine(documents, last);
  } catch (const std::bad_alloc&) {
    lastLine() = "tessel: stopped\n";  // shorter than what it held, so that it takes no memory
  }
}

}  // namespace tessel_tool
