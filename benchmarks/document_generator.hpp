#pragma once

/// @file
/// Documents to measure with: the same text on every machine, with every standard library.

#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>

namespace benchmarks {

/// The kinds of objects that the bundle's builders claim.
enum class Kind {
  kButton,
  kCheckBox,
  kColorPicker,
  kCombobox,
  kDatePicker,
  kEditField,
  kFileBrowser,
  kRangeSlider,
  kSlider,
  kSpinner,
  kStateButton,
  kTaskHeader,
  kTask,
};

constexpr std::size_t kKindCount = 13;

/// The kind's name as it appears in tables.
const char* nameOf(Kind kind) noexcept;

/// Writes compact JSON from a fixed seed. About 400 bytes of document come with each control, of
/// which the control itself is three quarters. Of the objects that a walk offers to builders 70 %
/// are nothing of theirs: lines, paragraphs, text runs. Some texts are not ASCII, some hold
/// escapes; a part of the optional fields is left out. Every control builds without an error.
class DocumentGenerator {
 public:
  /// A whole document of about the size, with all kinds in equal shares.
  std::string documentOfSize(std::size_t bytes);
  /// A whole document with so many controls, the kinds in equal shares but for the last few.
  std::string documentOfControls(std::size_t controls);
  /// One control alone.
  std::string control(Kind kind);
  /// One object that no builder claims: a line of code with two text runs.
  std::string strangerLine();

 private:
  void startDocument();
  std::string finishDocument();
  void addBlock(Kind kind);
  void addControl(Kind kind);
  void addControlObject(std::string_view className, std::string_view typeWord, Kind kind);
  void addOwnFields(Kind kind);
  void addNumericFields();
  void addTaskHeader();
  void addTask();
  void addTextRun();
  void addComboboxLists();
  void shuffleKinds();

  void text(std::string_view json) { out_ += json; }
  /// `,"key":"words"`
  void textField(std::string_view key, std::size_t words);
  void oneOf(std::string_view key, std::initializer_list<std::string_view> values);
  void numberField(std::string_view key);
  void integerField(std::string_view key, std::uint64_t value);
  void flagField(std::string_view key);
  void addWords(std::size_t words);
  void addIdentifier();
  std::uint64_t below(std::uint64_t limit) { return random_() % limit; }
  /// True in so many of a hundred cases.
  bool chance(unsigned percent) { return below(100) < percent; }

  std::mt19937_64 random_{20261121};
  std::string out_;
  std::size_t blocks_ = 0;
  std::array<Kind, kKindCount> order_{};
};

/// A document of about the size.
std::string generateDocument(std::size_t bytes);
/// A document with so many controls.
std::string generateControls(std::size_t controls);

}  // namespace benchmarks
