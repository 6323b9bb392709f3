#include "document_generator.hpp"

#include <algorithm>
#include <utility>

namespace benchmarks {

namespace {

// Pieces of JSON text, escapes included.
constexpr std::string_view kWords[] = {
    "window",       "filter",        "median",          "cooling",
    "raw",          "smooth",        "threshold",       "the",
    "of",           "first",         "sample",          "rate",
    "plot",         "of the signal", "x = 3;",          "y(1:n)",
    "data",         "table",         "estimate",        "fit",
    "curve",        "range",         "limits",          "weight",
    "iterations",   "noise",         "Gr\u00f6\u00dfe", "temp\u00e9rature",
    "\u6e29\u5ea6", "\u00b5m",       "\\\"raw.csv\\\"", "a\\\\b",
    "one\\ttwo",    "caf\\u00e9",    "line\\nnext",     "\U0001F4C8"};

constexpr std::string_view kNumbers[] = {"0",    "1",
                                         "2",    "10",
                                         "100",  "0.5",
                                         "0.25", "0.05",
                                         "-1",   "-12.75",
                                         "3.14", "1e-3",
                                         "1000", "48",
                                         "0.1",  "2.5e6",
                                         "17",   "99.9",
                                         "7",    "64",
                                         "365",  "0.30000000000000004"};

/// How long a document gets by one control of each kind, about.
constexpr std::size_t kBytesOfRound = kKindCount * 400;

}  // namespace

const char* nameOf(Kind kind) noexcept {
  constexpr const char* kNames[kKindCount] = {
      "button",       "check box",    "colour picker", "combo box", "date picker",
      "edit field",   "file browser", "range slider",  "slider",    "spinner",
      "state button", "task header",  "task"};
  return kNames[static_cast<std::size_t>(kind)];
}

std::string DocumentGenerator::documentOfSize(std::size_t bytes) {
  startDocument();
  while (out_.size() + kBytesOfRound / 2 < bytes) {
    shuffleKinds();
    for (const Kind kind : order_) addBlock(kind);
  }
  return finishDocument();
}

std::string DocumentGenerator::documentOfControls(std::size_t controls) {
  startDocument();
  for (std::size_t control = 0; control < controls; ++control) {
    if (control % kKindCount == 0) shuffleKinds();
    addBlock(order_[control % kKindCount]);
  }
  return finishDocument();
}

std::string DocumentGenerator::control(Kind kind) {
  addControl(kind);
  return std::exchange(out_, {});
}

std::string DocumentGenerator::strangerLine() {
  text(R"({"className":"CodeLineNode","children":[)");
  addTextRun();
  text(",");
  addTextRun();
  text("]}");
  return std::exchange(out_, {});
}

void DocumentGenerator::startDocument() {
  blocks_ = 0;
  text(R"({"className":"DocumentNode","children":[)");
}

std::string DocumentGenerator::finishDocument() {
  text("]}");
  return std::exchange(out_, {});
}

void DocumentGenerator::addBlock(Kind kind) {
  if (blocks_ != 0) text(",");
  // Two strangers in every block and two more in every sixth make seven out of ten offered objects.
  if (++blocks_ % 6 == 0) {
    text(R"({"className":"ParagraphNode","children":[)");
    addTextRun();
    text("]},");
  }
  text(R"({"className":"CodeLineNode","children":[)");
  addTextRun();
  text(",");
  addControl(kind);
  text("]}");
}

void DocumentGenerator::addTextRun() {
  text(R"({"className":"TextNode")");
  textField("text", 4);
  text("}");
}

void DocumentGenerator::addControl(Kind kind) {
  switch (kind) {
    case Kind::kButton:
      return addControlObject("LumoControlNode", "button", kind);
    case Kind::kCheckBox:
      return addControlObject("LumoControlNode", "checkBox", kind);
    case Kind::kCombobox:
      return addControlObject("LumoControlNode", "comboBox", kind);
    case Kind::kEditField:
      return addControlObject("LumoControlNode", "editField", kind);
    case Kind::kSlider:
      return addControlObject("LumoControlNode", "slider", kind);
    case Kind::kColorPicker:
      return addControlObject("ColorPickerControlNode", "", kind);
    case Kind::kDatePicker:
      return addControlObject("DatePickerControlNode", "", kind);
    case Kind::kFileBrowser:
      return addControlObject("FileBrowserControlNode", "", kind);
    case Kind::kRangeSlider:
      return addControlObject("RangeSliderControlNode", "", kind);
    case Kind::kSpinner:
      return addControlObject("SpinnerControlNode", "", kind);
    case Kind::kStateButton:
      return addControlObject("StateButtonControlNode", "", kind);
    case Kind::kTaskHeader:
      return addTaskHeader();
    case Kind::kTask:
      return addTask();
  }
}

void DocumentGenerator::addControlObject(std::string_view className, std::string_view typeWord,
                                         Kind kind) {
  text(R"({"className":")");
  text(className);
  text(R"(","controlId":")");
  addIdentifier();
  text("\"");
  if (chance(90)) {
    const std::uint64_t column = below(60);
    integerField("startColumn", column);
    integerField("endColumn", column + 1 + below(30));
  }
  if (chance(80)) textField("text", 6);
  text(R"(,"context":{)");
  if (!typeWord.empty()) {
    text(R"("type":")");
    text(typeWord);
    text("\",");
  }
  text(R"("data":{"text":")");
  addWords(3);
  text("\"");
  if (chance(70)) oneOf("executionModel", {"section", "document", "none", "toEnd"});
  addOwnFields(kind);
  text("}}}");
}

void DocumentGenerator::addOwnFields(Kind kind) {
  switch (kind) {
    case Kind::kCheckBox:
    case Kind::kStateButton:
      if (chance(80)) flagField("defaultValue");
      if (chance(40)) textField("defaultValueLinkedVariable", 1);
      return;
    case Kind::kColorPicker:
      oneOf("colorFormat", {"hex", "rgb", "name"});
      if (chance(80)) oneOf("defaultValue", {"#0072b2", "[0.25 0.5 1]", "red"});
      return;
    case Kind::kDatePicker:
      oneOf("displayFormat", {"yyyy-MM-dd", "dd.MM.yyyy HH:mm", "MM/dd"});
      if (chance(80)) oneOf("defaultValue", {"2026-03-01", "01.03.2026 12:00", "03/01"});
      return;
    case Kind::kFileBrowser:
      oneOf("browserType", {"file", "folder"});
      if (chance(80)) textField("defaultValue", 3);
      return;
    case Kind::kCombobox:
      if (chance(80)) textField("defaultValue", 1);
      if (chance(40)) textField("linkedVariable", 1);
      return addComboboxLists();
    case Kind::kEditField:
      if (chance(50)) {
        text(R"(,"valueType":"Double")");
        numberField("defaultValue");
      } else {
        oneOf("valueType", {"String", "Date"});
        textField("defaultValue", 2);
      }
      return textField("defaultValueLinkedVariable", 1);
    case Kind::kRangeSlider:
      addNumericFields();
      if (chance(80)) oneOf("defaultValue", {"[2 8]", "[0.25 0.75]"});
      return;
    case Kind::kSlider:
    case Kind::kSpinner:
      addNumericFields();
      if (chance(80)) numberField("defaultValue");
      return;
    case Kind::kButton:
    case Kind::kTaskHeader:
    case Kind::kTask:
      return;
  }
}

void DocumentGenerator::addNumericFields() {
  if (chance(50)) oneOf("executionOn", {"release", "change"});
  if (chance(90)) numberField("minimum");
  if (chance(90)) numberField("maximum");
  if (chance(90)) numberField("step");
  if (chance(40)) textField("defaultValueLinkedVariable", 1);
  if (chance(20)) textField("minLinkedVariable", 1);
  if (chance(20)) textField("maxLinkedVariable", 1);
  if (chance(20)) textField("stepLinkedVariable", 1);
}

void DocumentGenerator::addComboboxLists() {
  const std::uint64_t items = 2 + below(2);
  text(R"(,"items":[)");
  for (std::uint64_t item = 0; item < items; ++item) {
    if (item != 0) text(",");
    text(R"({"label":")");
    addWords(1);
    text("\"");
    textField("value", 1);
    text("}");
  }
  text("]");
  if (!chance(50)) return;
  text(R"(,"itemLabels":[)");
  for (std::uint64_t item = 0; item < items; ++item) {
    text(item == 0 ? "\"" : ",\"");
    addWords(1);
    text("\"");
  }
  text("]");
}

void DocumentGenerator::addTaskHeader() {
  text(R"({"className":"LumoAppLineNode","anchorId":")");
  if (chance(50)) text("M_");
  addIdentifier();
  text(R"(","children":[)");
  addTextRun();
  text(",");
  addTask();
  text("]}");
}

void DocumentGenerator::addTask() {
  text(R"({"className":"LumoAppIntegratedInlineNode","instanceId":")");
  addIdentifier();
  text("\"");
  textField("taskID", 1);
  oneOf("appIdentifier", {"cleaner", "resampler", "plotter"});
  if (chance(60)) oneOf("view", {"controls", "code", "both"});
  if (chance(60)) oneOf("collapsed", {"true", "false"});
  if (chance(50)) text(R"(,"appVariables":"{\"method\":\"median\"}")");
  if (chance(20)) text(R"(,"appVariablesUserMap":"{\"raw\":\"table\"}")");
  if (chance(50)) oneOf("executionModel", {"section", "document"});
  if (chance(30)) text(R"(,"appState":"{\"page\":1}")");
  if (chance(60)) oneOf("autorun", {"true", "false"});
  textField("text", 6);
  integerField("numOfCodeLines", 1 + below(9));
  text("}");
}

void DocumentGenerator::shuffleKinds() {
  for (std::size_t kind = 0; kind < kKindCount; ++kind) order_[kind] = static_cast<Kind>(kind);
  for (std::size_t left = kKindCount; left > 1; --left) {
    std::swap(order_[left - 1], order_[static_cast<std::size_t>(below(left))]);
  }
}

void DocumentGenerator::textField(std::string_view key, std::size_t words) {
  text(",\"");
  text(key);
  text("\":\"");
  addWords(words);
  text("\"");
}

void DocumentGenerator::oneOf(std::string_view key,
                              std::initializer_list<std::string_view> values) {
  text(",\"");
  text(key);
  text("\":\"");
  text(values.begin()[below(values.size())]);
  text("\"");
}

void DocumentGenerator::numberField(std::string_view key) {
  text(",\"");
  text(key);
  text("\":");
  text(kNumbers[below(std::size(kNumbers))]);
}

void DocumentGenerator::integerField(std::string_view key, std::uint64_t value) {
  text(",\"");
  text(key);
  text("\":");
  text(std::to_string(value));
}

void DocumentGenerator::flagField(std::string_view key) {
  text(",\"");
  text(key);
  text(chance(50) ? "\":true" : "\":false");
}

void DocumentGenerator::addWords(std::size_t words) {
  for (std::size_t word = 0; word < words; ++word) {
    if (word != 0) text(" ");
    text(kWords[below(std::size(kWords))]);
  }
}

void DocumentGenerator::addIdentifier() {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::uint64_t bits = random_();
  for (int digit = 0; digit < 16; ++digit) {
    out_ += kDigits[bits % 16];
    bits /= 16;
  }
}

std::string generateDocument(std::size_t bytes) {
  return DocumentGenerator().documentOfSize(bytes);
}

std::string generateControls(std::size_t controls) {
  return DocumentGenerator().documentOfControls(controls);
}

}  // namespace benchmarks
