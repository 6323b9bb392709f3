#include "page/spool.hpp"

#include <algorithm>
#include <cerrno>
#include <vector>

#include "console.hpp"

namespace tessel_tool {

namespace {

constexpr std::size_t kPiece = 65536;

[[noreturn]] void fail() {
  throw OutputError("temporary file");
}

}  // namespace

void Spool::append(std::string_view text) {
  size_ += text.size();
  if (text_.size() + text.size() < kInMemory) {
    text_ += text;
    return;
  }
  write(text_);
  text_.clear();
  write(text);
}

void Spool::write(std::string_view text) {
  errno = 0;
  if (!file_) file_.reset(std::tmpfile());
  if (!file_ || std::fwrite(text.data(), 1, text.size(), file_.get()) != text.size()) fail();
}

void Spool::truncate(std::size_t size) {
  const std::size_t inFile = size_ - text_.size();
  if (size >= inFile) {
    text_.resize(size - inFile);
  } else {
    text_.clear();
    if (std::fseek(file_.get(), static_cast<long>(size), SEEK_SET) != 0) fail();
  }
  size_ = size;
}

void Spool::writeAll() {
  if (file_) {
    errno = 0;
    std::rewind(file_.get());
    std::vector<char> piece(kPiece);
    for (std::size_t left = size_ - text_.size(); left != 0;) {
      const std::size_t wanted = std::min(left, piece.size());
      if (std::fread(piece.data(), 1, wanted, file_.get()) != wanted) fail();
      writeResult({piece.data(), wanted});
      left -= wanted;
    }
  }
  writeResult(text_);
}

}  // namespace tessel_tool
