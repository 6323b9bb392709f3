#include "console.hpp"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <initializer_list>
#include <new>
#include <system_error>
#include <utility>

#include "platform.hpp"
#include "stop.hpp"
#include "text_form.hpp"

namespace tessel_tool {

namespace {

constexpr std::chrono::milliseconds kProgressInterval(100);

/// The file that takes the results; null where standard output does.
std::FILE* resultFile = nullptr;
std::string_view resultPath;

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

/// The path that a path leads to through links, whether there is something or not.
std::string withoutLinks(const std::string& path) {
  namespace fs = std::filesystem;
  constexpr int kMostLinks = 40;
  std::error_code failed;
  fs::path target(path);
  for (int links = 0; fs::is_symlink(fs::symlink_status(target, failed)); ++links) {
    const fs::path link = fs::read_symlink(target, failed);
    if (failed || links == kMostLinks) {
      errno = failed ? failed.value() : ELOOP;
      throw OutputError(path);
    }
    target = target.parent_path() / link;  // the link alone where it is absolute
  }
  return target.string();
}

/// Makes a file of a name that is not in use, beside another one. @return null where that fails
std::FILE* createBeside(const std::string& target, std::string& path) {
  constexpr int kMostTries = 1000;
  for (int number = 1;; ++number) {
    path = target + (number == 1 ? ".part" : ".part" + std::to_string(number));
    errno = 0;
    std::FILE* const file = std::fopen(path.c_str(), "wbx");
    if (file != nullptr) return file;
    if (errno == EEXIST && number != kMostTries) continue;
    path.clear();  // nothing of ours is there
    return nullptr;
  }
}

}  // namespace

OutputError::OutputError(std::string where)
    : std::runtime_error(std::generic_category().message(errno == 0 ? EIO : errno)),
      where_(std::move(where)) {}

void writeResult(std::string_view text) {
  std::FILE* const stream = resultFile != nullptr ? resultFile : stdout;
  errno = 0;
  if (std::fwrite(text.data(), 1, text.size(), stream) != text.size() || std::fflush(stream) != 0) {
    throw OutputError(std::string(resultFile != nullptr ? resultPath : "standard output"));
  }
}

ResultFile::ResultFile(std::string path) : path_(std::move(path)) {
  namespace fs = std::filesystem;
  std::error_code failed;
  const fs::file_status status = fs::status(path_, failed);
  stopBetweenAnswers();
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    errno = 0;
    resultFile = std::fopen(path_.c_str(), "wb");
  } else {
    if (fs::exists(status)) {
      // What cannot be written is not replaced either.
      errno = 0;
      std::FILE* const writable = std::fopen(path_.c_str(), "ab");
      if (writable == nullptr) throw OutputError(path_);
      static_cast<void>(std::fclose(writable));
    }
    target_ = withoutLinks(path_);
    resultFile = createBeside(target_, written_);
    if (resultFile != nullptr) removeWhenStopped(written_.c_str());
  }
  if (resultFile == nullptr) throw OutputError(path_);
  resultPath = path_;
}

ResultFile::~ResultFile() {
  removeWhenStopped(nullptr);
  if (resultFile != nullptr) static_cast<void>(std::fclose(std::exchange(resultFile, nullptr)));
  if (!written_.empty()) static_cast<void>(std::remove(written_.c_str()));
}

void ResultFile::complete() {
  errno = 0;
  if (std::fclose(std::exchange(resultFile, nullptr)) != 0) throw OutputError(path_);
  if (target_.empty()) return;
  std::error_code failed;
  const auto before = std::filesystem::status(target_, failed);
  if (std::filesystem::exists(before)) {
    std::filesystem::permissions(written_, before.permissions(), failed);
  }
  removeWhenStopped(nullptr);
  std::filesystem::rename(written_, target_, failed);
  if (failed) {
    errno = failed.value();
    throw OutputError(path_);
  }
  written_.clear();
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
