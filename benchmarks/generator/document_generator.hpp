#pragma once

/// @file
/// Documents to measure with: the same text on every machine, with every standard library.

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "contract/kinds.hpp"

namespace benchmarks {

/// The contract's kinds in the order in which they are measured: controls first.
const std::vector<const contract::Kind*>& measuredKinds();

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
  std::string control(const contract::Kind& kind);
  /// One object that no builder claims: a line of code with two text runs.
  std::string strangerLine();

 private:
  void startDocument();
  std::string finishDocument();
  void addBlock(const contract::Kind& kind);
  void addControl(const contract::Kind& kind);
  void addTask(const contract::Kind& kind);
  void addTaskHeader(const contract::Kind& kind);
  void addTextRun();
  /// The fields that are read as the record's.
  void addFields(const contract::Kind& kind);
  void addField(const contract::FieldSpec& field);
  void addItems();
  void addItemLabels();
  void shuffleKinds();

  void text(std::string_view json) { out_ += json; }
  /// `,"key":"words"`
  void textField(std::string_view key, std::size_t words);
  void rawField(std::string_view key, std::string_view json);
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
  std::uint64_t items_ = 0;  // of the combo box that is being written
  bool hasNumber_ = false;   // for the default value of the edit field that is being written
  std::vector<const contract::Kind*> order_;
};

/// A document of about the size.
std::string generateDocument(std::size_t bytes);
/// A document with so many controls.
std::string generateControls(std::size_t controls);

}  // namespace benchmarks
