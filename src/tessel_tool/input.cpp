#include "tessel_tool/input.hpp"

#include <array>
#include <cerrno>
#include <filesystem>
#include <iostream>
#include <system_error>
#include <utility>

#include "reference_host/json/parse.hpp"
#include "reference_host/json/syntax_check.hpp"

namespace tessel_tool {

namespace {

constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";

std::string systemReason() {
  return std::generic_category().message(errno == 0 ? EIO : errno);
}

bool isWhiteSpace(std::string_view text) {
  return text.find_first_not_of(" \t\r") == std::string_view::npos;
}

}  // namespace

Input::Input(const std::string& path) : stream_(&file_) {
  errno = 0;
  if (path == kStandardInput) {
    std::ios::sync_with_stdio(false);
    stream_ = &std::cin;
  } else {
    file_.open(std::filesystem::path(path), std::ios::binary);
    if (!file_.is_open()) throw InputError(systemReason());
  }
}

std::string Input::readAll() {
  std::string text;
  std::array<char, 65536> buffer;
  errno = 0;
  do {
    stream_->read(buffer.data(), static_cast<std::streamsize>(buffer.size()));
    text.append(buffer.data(), static_cast<std::size_t>(stream_->gcount()));
  } while (*stream_);
  requireNoFailure();
  return text;
}

bool Input::readLine(std::string& line) {
  errno = 0;
  if (std::getline(*stream_, line)) return true;
  requireNoFailure();
  return false;
}

void Input::requireNoFailure() const {
  // The stream reports a failing device as bad, the end of the input as eof alone.
  if (stream_->bad()) throw InputError(systemReason());
}

foundation::json::Value Document::parse() const {
  try {
    // Only the start of an input may have a byte order mark; elsewhere it is a fault of the text.
    if (line > 1 && std::string_view(text).substr(0, kByteOrderMark.size()) == kByteOrderMark) {
      reference_host::json::checkSyntax(text);
    }
    return reference_host::json::parse(text);
  } catch (const reference_host::json::ParseError& error) {
    if (line == 1) throw;
    throw reference_host::json::ParseError(line + error.line() - 1, error.column(), error.reason());
  }
}

DocumentSource::DocumentSource(std::vector<std::string> paths, Unit unit)
    : paths_(std::move(paths)), unit_(unit) {
  if (paths_.empty()) paths_.emplace_back(kStandardInput);
}

std::optional<Document> DocumentSource::next() {
  while (input_ || nextPath_ != paths_.size()) {
    Document document;
    try {
      if (!input_) {
        document.path = document.name = paths_[nextPath_++];
        input_.emplace(document.path);
        line_ = 0;
      }
      if (unit_ == Unit::kWholeInput) {
        document.text = input_->readAll();
        input_.reset();
        return document;
      }
      if (std::optional<Document> line = nextLine()) return line;
      input_.reset();
    } catch (const InputError& error) {
      input_.reset();
      document.path = document.name = paths_[nextPath_ - 1];
      document.readError = error.what();
      return document;
    }
  }
  return std::nullopt;
}

std::optional<Document> DocumentSource::nextLine() {
  Document document;
  while (input_->readLine(document.text)) {
    ++line_;
    std::string_view content = document.text;
    if (line_ == 1 && content.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
      content.remove_prefix(kByteOrderMark.size());
    }
    if (isWhiteSpace(content)) continue;
    document.path = paths_[nextPath_ - 1];
    document.name = document.path + ":" + std::to_string(line_);
    document.line = line_;
    return document;
  }
  return std::nullopt;
}

}  // namespace tessel_tool
