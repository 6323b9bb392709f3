#include "console.hpp"

#include <cerrno>
#include <cstdio>
#include <initializer_list>
#include <new>
#include <system_error>

#include "platform.hpp"
#include "text_form.hpp"

namespace tessel_tool {

namespace {

constexpr std::chrono::milliseconds kProgressInterval(100);

void writeToStandardError(std::string_view text) noexcept {
  // Nobody could be told about a failure here.
  static_cast<void>(std::fwrite(text.data(), 1, text.size(), stderr));
  static_cast<void>(std::fflush(stderr));
}

/// Writes "tessel: " and the parts as one line.
void writeLine(std::initializer_list<std::string_view> parts) noexcept {
  try {
    std::string message;
    for (const std::string_view part : parts) message += part;
    writeToStandardError("tessel: " + visible(message) + '\n');
  } catch (const std::bad_alloc&) {
    // Without memory the message is written all the same, with plainer quoting.
    writeToStandardError("tessel: ");
    for (const std::string_view part : parts) {
      for (const char character : part) {
        const bool control = static_cast<unsigned char>(character) < 0x20 || character == '\x7f';
        writeToStandardError(control ? "?" : std::string_view(&character, 1));
      }
    }
    writeToStandardError("\n");
  }
}

}  // namespace

void writeResult(std::string_view text) {
  errno = 0;
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0) {
    throw OutputError(std::generic_category().message(errno == 0 ? EIO : errno));
  }
}

void complain(std::string_view message) noexcept {
  writeLine({message});
}

void complain(std::string_view subject, std::string_view reason) noexcept {
  writeLine({subject.empty() ? R"("")" : subject, ": ", reason});
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
