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

/// How long a document gets by one control, about.
constexpr std::size_t kBytesOfControl = 400;

}  // namespace

const std::vector<const contract::Kind*>& measuredKinds() {
  static const std::vector<const contract::Kind*> all = [] {
    std::vector<const contract::Kind*> kinds;
    for (const contract::Kind& kind : contract::kinds()) kinds.push_back(&kind);
    std::stable_partition(kinds.begin(), kinds.end(),
                          [](const contract::Kind* kind) { return contract::isControl(*kind); });
    return kinds;
  }();
  return all;
}

std::string DocumentGenerator::documentOfSize(std::size_t bytes) {
  startDocument();
  while (out_.size() + measuredKinds().size() * kBytesOfControl / 2 < bytes) {
    shuffleKinds();
    for (const contract::Kind* kind : order_) addBlock(*kind);
  }
  return finishDocument();
}

std::string DocumentGenerator::documentOfControls(std::size_t controls) {
  startDocument();
  for (std::size_t control = 0; control < controls; ++control) {
    const std::size_t place = control % measuredKinds().size();
    if (place == 0) shuffleKinds();
    addBlock(*order_[place]);
  }
  return finishDocument();
}

std::string DocumentGenerator::control(const contract::Kind& kind) {
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

void DocumentGenerator::addBlock(const contract::Kind& kind) {
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

void DocumentGenerator::addControl(const contract::Kind& kind) {
  if (kind.shape == contract::Shape::kHeader) return addTaskHeader(kind);
  if (kind.shape == contract::Shape::kTask) return addTask(kind);
  const bool isGeneric = contract::isGeneric(kind);
  text(R"({"className":")");
  text(isGeneric ? contract::kGenericControl : kind.word);
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
  if (isGeneric) {
    text(R"("type":")");
    text(kind.word);
    text("\",");
  }
  text(R"("data":{"text":")");
  addWords(3);
  text("\"");
  addFields(kind);
  text("}}}");
}

void DocumentGenerator::addFields(const contract::Kind& kind) {
  for (const contract::FieldSpec& field : kind.fields) {
    const bool isWritten =
        contract::isControl(kind) &&
        (field.place == contract::FieldSpec::Place::kObject || field.key == "text");
    if (isWritten || field.holder != contract::FieldSpec::Holder::kData) continue;
    // No draw where there is nothing to choose.
    if (field.usage.percent == 100 || chance(field.usage.percent)) addField(field);
  }
}

void DocumentGenerator::addField(const contract::FieldSpec& field) {
  using contract::Type;
  const contract::Usage& usage = field.usage;
  switch (field.type) {
    case Type::kNumber:
    case Type::kColumn:
      return numberField(field.key);
    case Type::kLineCount:
      return integerField(field.key, 1 + below(9));
    case Type::kFlag:
      return flagField(field.key);
    case Type::kItems:
      return addItems();
    case Type::kItemLabels:
      return addItemLabels();
    case Type::kDefault:
      if (hasNumber_) return numberField(field.key);
      break;
    case Type::kValueType:
      hasNumber_ = chance(50);
      if (hasNumber_) return rawField(field.key, R"("Double")");
      break;
    case Type::kText:
    case Type::kTextOrNothing:
    case Type::kAnchor:
    case Type::kDefaultLinked:
    case Type::kChildren:
      break;
  }
  if (usage.values.empty()) return textField(field.key, usage.words);
  const bool isFixed = usage.values.size() == 1;
  rawField(field.key, usage.values[isFixed ? 0 : below(usage.values.size())]);
}

void DocumentGenerator::addItems() {
  items_ = 2 + below(2);
  text(R"(,"items":[)");
  for (std::uint64_t item = 0; item < items_; ++item) {
    if (item != 0) text(",");
    text(R"({"label":")");
    addWords(1);
    text("\"");
    textField("value", 1);
    text("}");
  }
  text("]");
}

/// One for each of the items.
void DocumentGenerator::addItemLabels() {
  text(R"(,"itemLabels":[)");
  for (std::uint64_t item = 0; item < items_; ++item) {
    text(item == 0 ? "\"" : ",\"");
    addWords(1);
    text("\"");
  }
  text("]");
}

void DocumentGenerator::addTaskHeader(const contract::Kind& kind) {
  text(R"({"className":")");
  text(kind.word);
  text(R"(","anchorId":")");
  if (chance(50)) text("M_");
  addIdentifier();
  text(R"(","children":[)");
  addTextRun();
  text(",");
  addTask(contract::taskKind());
  text("]}");
}

void DocumentGenerator::addTask(const contract::Kind& kind) {
  text(R"({"className":")");
  text(kind.word);
  text(R"(","instanceId":")");
  addIdentifier();
  text("\"");
  addFields(kind);
  text("}");
}

void DocumentGenerator::shuffleKinds() {
  order_ = measuredKinds();
  for (std::size_t left = order_.size(); left > 1; --left) {
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

void DocumentGenerator::rawField(std::string_view key, std::string_view json) {
  text(",\"");
  text(key);
  text("\":");
  text(json);
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
