#pragma once

/// @file
/// Reading the tool's inputs: files and standard input, whole or line by line.

#include <cstddef>
#include <fstream>
#include <istream>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/json.hpp"

namespace tessel_tool {

/// The path that stands for standard input.
inline constexpr const char* kStandardInput = "-";

/// An input that cannot be opened or read. `what()` is the system's reason.
class InputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A file, or standard input, that is open for reading.
class Input {
 public:
  /// @throws InputError
  explicit Input(const std::string& path);

  /// Everything from here to the end. @throws InputError
  std::string readAll();
  /// The next line, without its line feed; false at the end. Waits for no more than the line.
  /// @throws InputError
  bool readLine(std::string& line);
  /// Passes over what there is left of a line that `readLine` had no memory for. @throws InputError
  void skipLine();
  /// Whether the next line has been read already, so that `readLine` neither waits nor fails.
  bool lineIsBuffered() const noexcept;

 private:
  template <typename Take>
  bool takeLine(const Take& take);
  bool refill();
  std::string_view buffered() const noexcept;
  void requireNoFailure() const;

  std::ifstream file_;
  std::istream* stream_;
  std::size_t expectedSize_ = 0;  // of a file; no more than a hint
  std::vector<char> buffer_;      // of lines; empty until the first is asked for
  std::size_t begin_ = 0;         // what is in it and was not given yet
  std::size_t end_ = 0;
  int failure_ = 0;  // errno of a read that failed behind what is in it
};

/// Members overridden by a later one of the same name in the same object.
struct DuplicateMembers {
  std::size_t count = 0;
  std::size_t documents = 0;  ///< that they are in
  std::string place;          ///< of the first: "path:line:column" in the input
  std::string name;           ///< of the first
  std::string pointer;        ///< of the first

  void add(const DuplicateMembers& later);
  /// The warning about them.
  std::string describe() const;
};

/// One document as it was read, or the reason why it was not.
struct Document {
  std::string path;       ///< the input that it comes from, as given
  std::string name;       ///< what results call it
  std::string text;       ///< the JSON text, until it is parsed
  std::size_t line = 1;   ///< where in the input the text begins
  std::string readError;  ///< not empty when the input could not be read

  DuplicateMembers duplicates;  ///< those that `parse` found

  /// The document's value. The text is left to `content` alone.
  /// @throws reference_host::json::ParseError with the line as counted in the input.
  foundation::json::Value parse();

  /// The text that `parse` read or refused, without a byte order mark.
  std::string_view content() const noexcept {
    return std::string_view(text).substr(contentBegin_, contentSize_);
  }

 private:
  std::size_t contentBegin_ = 0;
  std::size_t contentSize_ = 0;
};

/// The documents of several inputs, one after the other: whole inputs, or one for each of their
/// lines that is not white space alone. An input that cannot be read gives one document that says
/// so, and so does an input or a line that there is no memory for. No more is read ahead than one
/// buffer of lines.
class DocumentSource {
 public:
  enum class Unit { kWholeInput, kLine };

  /// @param paths the inputs; none means standard input.
  /// @param firstLine the number of the first line of the first input.
  DocumentSource(std::vector<std::string> paths, Unit unit, std::size_t firstLine = 1);

  /// The next document; nothing at the end.
  std::optional<Document> next();
  /// The next document as a batch of its own; nothing at the end.
  std::optional<std::vector<Document>> nextAlone();
  /// The next document and those after it that can be had without waiting: lines, or files;
  /// nothing at the end. All but the first are 64 KiB together at most. Where memory runs out
  /// the batch ends.
  std::optional<std::vector<Document>> nextBatch();
  /// Whether there is no document left. Where they are lines it may be too early to say yes.
  bool isAtEnd() const noexcept { return !input_ && nextPath_ == paths_.size(); }

 private:
  bool readLine(Document& document);
  bool nextFits(std::size_t& room) const;

  std::vector<std::string> paths_;
  std::size_t nextPath_ = 0;
  Unit unit_;
  std::size_t firstLine_;       // of the input that comes next
  std::optional<Input> input_;  // the one whose lines are being read
  std::size_t line_ = 0;        // the last one read of it
};

}  // namespace tessel_tool
