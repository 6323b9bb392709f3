#include "tessel_tool/console.hpp"

#include <cerrno>
#include <cstdio>
#include <new>
#include <system_error>

#include "tessel_tool/platform.hpp"
#include "tessel_tool/text_form.hpp"

namespace tessel_tool {

namespace {

constexpr std::chrono::milliseconds kProgressInterval(100);

void writeToStandardError(std::string_view text) noexcept {
  // Nobody could be told about a failure here.
  static_cast<void>(std::fwrite(text.data(), 1, text.size(), stderr));
  static_cast<void>(std::fflush(stderr));
}

}  // namespace

void writeResult(std::string_view text) {
  errno = 0;
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0) {
    throw OutputError(std::generic_category().message(errno == 0 ? EIO : errno));
  }
}

void complain(std::string_view message) noexcept {
  try {
    std::string line("tessel: ");
    writeToStandardError(line.append(onOneLine(message)).append("\n"));
  } catch (const std::bad_alloc&) {
    writeToStandardError("tessel: out of memory\n");
  }
}

void complain(std::string_view subject, std::string_view reason) noexcept {
  try {
    std::string message(subject);
    complain(message.append(": ").append(reason));
  } catch (const std::bad_alloc&) {
    complain("out of memory");
  }
}

ProgressLine::ProgressLine(bool wanted)
    : enabled_(wanted && canEraseLine(stderr)), nextShow_(Clock::now() + kProgressInterval) {}

ProgressLine::~ProgressLine() {
  erase();
}

void ProgressLine::erase() noexcept {
  if (visible_) writeToStandardError("\r\x1b[K");
  visible_ = false;
}

void ProgressLine::show(std::size_t documents, std::size_t failed) {
  if (!enabled_ || Clock::now() < nextShow_) return;
  nextShow_ = Clock::now() + kProgressInterval;
  writeToStandardError("\r\x1b[K" + std::to_string(documents) + " documents, " +
                       std::to_string(failed) + " failed");
  visible_ = true;
}

}  // namespace tessel_tool
