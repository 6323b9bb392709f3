#pragma once

/// @file
/// Text that has to wait, in a temporary file where there is much of it.

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace tessel_tool {

class Spool {
 public:
  /// More than this is not kept in memory: a piece of that size goes straight to the file.
  static constexpr std::size_t kInMemory = 1U << 20U;

  /// @throws OutputError
  void append(std::string_view text);
  std::size_t size() const noexcept { return size_; }
  /// Takes back what was appended behind a size. @throws OutputError
  void truncate(std::size_t size);
  /// Writes all of it as a result. @throws OutputError
  void writeAll();

 private:
  struct Close {
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
  };

  void write(std::string_view text);

  std::string text_;  // behind what is in the file
  std::unique_ptr<std::FILE, Close> file_;
  std::size_t size_ = 0;
};

}  // namespace tessel_tool
