#include "input.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <iostream>
#include <new>
#include <system_error>
#include <utility>

#include "console.hpp"
#include "platform.hpp"
#include "reference_host/json/parse.hpp"
#include "reference_host/json/syntax_check.hpp"
#include "reference_host/json/text_places.hpp"
#include "reference_host/json/text_writer.hpp"

namespace tessel_tool {

using reference_host::json::appendVisible;
using reference_host::json::appendVisiblePointer;

namespace {

constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";
constexpr std::size_t kLineBufferSize = 65536;
constexpr std::size_t kRoomForParse = 128;  // what `parseInPlace` puts around a text
// What a batch of files may come to, and what the smallest one counts for.
constexpr std::size_t kBatchOfFiles = 65536;
constexpr std::uintmax_t kSmallestFile = 1024;

std::string systemReason() {
  return std::generic_category().message(errno == 0 ? EIO : errno);
}

/// Whether a line is white space alone.
bool isBlank(const Document& line) {
  if (!line.readError.empty()) return false;
  std::string_view content = line.text;
  if (line.line == 1 && content.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
    content.remove_prefix(kByteOrderMark.size());
  }
  return content.find_first_not_of(" \t\r") == std::string_view::npos;
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
    std::error_code unknown;
    const std::uintmax_t size = std::filesystem::file_size(path, unknown);
    if (!unknown) expectedSize_ = static_cast<std::size_t>(size);
  }
}

std::string Input::readAll() {
  std::string text;
  try {
    text.reserve(expectedSize_ + kRoomForParse);
  } catch (const std::exception&) {
    // What there is may be shorter.
  }
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
  line.clear();
  const bool ended = takeLine([&line](std::string_view part) { line += part; });
  return ended || !line.empty();
}

void Input::skipLine() {
  takeLine([](std::string_view) {});
}

/// Takes a line part by part; false if the input ends before the line does.
template <typename Take>
bool Input::takeLine(const Take& take) {
  do {
    const std::string_view left = buffered();
    const std::size_t length = left.find('\n');
    take(left.substr(0, length));
    if (length != std::string_view::npos) {
      begin_ += length + 1;
      return true;
    }
  } while (refill());
  return false;
}

bool Input::lineIsBuffered() const noexcept {
  return buffered().find('\n') != std::string_view::npos;
}

std::string_view Input::buffered() const noexcept {
  return {buffer_.data() + begin_, end_ - begin_};
}

/// Waits for one character, and takes what there is behind it without waiting; false at the end.
/// Where the standard library's `readsome` gives nothing, input is slow, not wrong.
bool Input::refill() {
  buffer_.resize(kLineBufferSize);
  begin_ = end_ = 0;
  errno = failure_;
  char first = 0;
  if (!stream_->get(first)) {
    requireNoFailure();
    return false;
  }
  buffer_[end_++] = first;
  std::streamsize taken = 0;
  do {
    taken = stream_->readsome(buffer_.data() + end_,
                              static_cast<std::streamsize>(buffer_.size() - end_));
    end_ += static_cast<std::size_t>(taken);
  } while (taken > 0);
  if (stream_->bad()) failure_ = errno;
  return true;
}

void Input::requireNoFailure() const {
  // The stream reports a failing device as bad, the end of the input as eof alone.
  if (stream_->bad()) throw InputError(systemReason());
}

void DuplicateMembers::add(const DuplicateMembers& later) {
  if (count == 0) {
    *this = later;
    return;
  }
  count += later.count;
  documents += later.documents;
}

std::string DuplicateMembers::describe() const {
  std::string text = std::to_string(count);
  text += count == 1 ? " duplicate member" : " duplicate members";
  if (documents > 1) text += " in " + std::to_string(documents) + " documents";
  text += count == 1 ? ", " : ", the first ";
  appendVisible(text, name, reference_host::json::Quotes::kAround);
  text += " at ";
  appendVisiblePointer(text, pointer);
  return text += "; the last of a name holds";
}

foundation::json::Value Document::parse() {
  reference_host::json::ParseReport report;
  const auto rememberContent = [&] {
    contentBegin_ =
        report.text.empty() ? 0 : static_cast<std::size_t>(report.text.data() - text.data());
    contentSize_ = report.text.size();
  };
  try {
    // Only the start of an input may have a byte order mark; elsewhere it is a fault of the text.
    report.text = text;
    if (line > 1 && std::string_view(text).substr(0, kByteOrderMark.size()) == kByteOrderMark) {
      reference_host::json::checkSyntax(text);
    }
    foundation::json::Value value = reference_host::json::parseInPlace(text, report);
    rememberContent();
    if (report.duplicateMembers != 0) {
      const auto first = reference_host::json::findDuplicates(report.text).front();
      const auto& place = first.key.begin;
      duplicates = {
          report.duplicateMembers, 1,
          path + ':' + std::to_string(line + place.line - 1) + ':' + std::to_string(place.column),
          first.name, first.pointer};
    }
    return value;
  } catch (const reference_host::json::ParseError& error) {
    rememberContent();
    if (line == 1) throw;
    throw reference_host::json::ParseError(line + error.line() - 1, error.column(), error.reason());
  }
}

DocumentSource::DocumentSource(std::vector<std::string> paths, Unit unit, std::size_t firstLine)
    : paths_(std::move(paths)), unit_(unit), firstLine_(firstLine) {
  if (paths_.empty()) paths_.emplace_back(kStandardInput);
  if (std::count(paths_.begin(), paths_.end(), kStandardInput) != 0 && isTerminal(stdin)) {
    complain(std::string("waiting for JSON on standard input; ") + kEndOfInputKey +
             " at the start of a line ends it");
  }
}

std::optional<Document> DocumentSource::next() {
  while (input_ || nextPath_ != paths_.size()) {
    Document document;
    try {
      if (!input_) {
        document.path = document.name = paths_[nextPath_];
        ++nextPath_;
        input_.emplace(document.path);
        line_ = std::exchange(firstLine_, 1) - 1;
      }
      if (unit_ == Unit::kWholeInput) {
        document.text = input_->readAll();
        input_.reset();
        return document;
      }
      while (readLine(document)) {
        if (!isBlank(document)) return document;
      }
      input_.reset();
    } catch (const InputError& error) {
      input_.reset();
      document.path = document.name = paths_[nextPath_ - 1];
      document.readError = error.what();
      return document;
    } catch (const std::bad_alloc&) {
      input_.reset();
      if (document.name.empty() || document.path.empty()) throw;
      document.readError = kOutOfMemory;
      return document;
    }
  }
  return std::nullopt;
}

std::optional<std::vector<Document>> DocumentSource::nextAlone() {
  std::vector<Document> batch;
  batch.reserve(1);  // there is a place for what is read before it is read
  std::optional<Document> first = next();
  if (!first) return std::nullopt;
  batch.push_back(std::move(*first));
  return batch;
}

std::optional<std::vector<Document>> DocumentSource::nextBatch() {
  std::optional<std::vector<Document>> first = nextAlone();
  if (!first) return std::nullopt;
  std::vector<Document>& batch = *first;
  try {
    while (input_ && input_->lineIsBuffered()) {
      if (batch.size() == batch.capacity()) batch.reserve(2 * batch.size());
      Document document;
      readLine(document);
      if (!isBlank(document)) batch.push_back(std::move(document));
    }
    if (unit_ == Unit::kWholeInput && batch.front().text.size() < kBatchOfFiles) {
      std::size_t room = kBatchOfFiles;
      while (nextFits(room)) {
        if (batch.size() == batch.capacity()) batch.reserve(2 * batch.size());
        batch.push_back(*next());
      }
    }
  } catch (const std::bad_alloc&) {
    // Nothing has been lost; the next document begins a batch.
  }
  return first;
}

/// Whether the next input is a file that fits, and takes it out of the room. Other inputs may have
/// to be waited for.
bool DocumentSource::nextFits(std::size_t& room) const {
  if (nextPath_ == paths_.size() || paths_[nextPath_] == kStandardInput) return false;
  std::error_code notAFile;
  const std::uintmax_t size = std::filesystem::file_size(paths_[nextPath_], notAFile);
  if (notAFile || std::max(size, kSmallestFile) > room) return false;
  room -= std::max(size, kSmallestFile);
  return true;
}

bool DocumentSource::readLine(Document& document) {
  // Named first: a line that there is no memory for has to be named.
  document.line = line_ + 1;
  document.path = paths_[nextPath_ - 1];
  document.name = document.path + ":" + std::to_string(document.line);
  try {
    if (!input_->readLine(document.text)) return false;
  } catch (const std::bad_alloc&) {
    std::string().swap(document.text);
    input_->skipLine();
    document.readError = kOutOfMemory;
  }
  ++line_;
  return true;
}

}  // namespace tessel_tool
