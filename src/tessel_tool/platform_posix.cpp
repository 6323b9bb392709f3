#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <string_view>

#include "platform.hpp"

namespace tessel_tool {

const char* const kEndOfInputKey = "Ctrl-D";

bool isTerminal(std::FILE* stream) noexcept {
  return isatty(fileno(stream)) != 0;
}

bool canEraseLine(std::FILE* stream) noexcept {
  // Nothing changes the environment.
  const char* const kind = std::getenv("TERM");  // NOLINT(concurrency-mt-unsafe)
  return isTerminal(stream) && kind != nullptr && std::string_view(kind) != "dumb";
}

void reportBrokenPipesAsErrors() noexcept {
  static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
}

void setStopHandler(void (*handler)(int)) noexcept {
  for (const int number : {SIGINT, SIGTERM}) {
    struct sigaction action {};
    if (sigaction(number, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) continue;
    action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;  // an answer that is being written goes on
    static_cast<void>(sigaction(number, &action, nullptr));
  }
}

void endBySignal(int signal) noexcept {
  static_cast<void>(std::signal(signal, SIG_DFL));
  sigset_t only;
  sigemptyset(&only);
  sigaddset(&only, signal);
  static_cast<void>(pthread_sigmask(SIG_UNBLOCK, &only, nullptr));
  static_cast<void>(raise(signal));
  _exit(EXIT_FAILURE);  // not reached
}

void writeFromHandler(std::string_view text) noexcept {
  while (!text.empty()) {
    const ssize_t written = write(STDERR_FILENO, text.data(), text.size());
    if (written <= 0) return;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
}

void removeFromHandler(const char* path) noexcept {
  static_cast<void>(unlink(path));
}

}  // namespace tessel_tool
