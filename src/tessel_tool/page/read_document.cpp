#include "page/read_document.hpp"

#include <algorithm>
#include <new>
#include <optional>
#include <string_view>
#include <utility>

#include "console.hpp"
#include "problem_report.hpp"
#include "reference_host/diagnosis/document_check.hpp"
#include "reference_host/diagnosis/unclaimed_object.hpp"
#include "reference_host/json/parse.hpp"
#include "reference_host/json/text_places.hpp"
#include "reference_host/logging/log_capture.hpp"

namespace tessel_tool {

using reference_host::diagnosis::Code;
using reference_host::diagnosis::Knowledge;
using reference_host::diagnosis::looksLikeControl;
using reference_host::diagnosis::Recognition;
using reference_host::importer::OnError;
using reference_host::logging::LogCapture;
using Object = ReadDocument::Object;

namespace {

/// Takes down what becomes of objects, with the records of each.
class ObjectNotes final : public CheckedObjects {
 public:
  ObjectNotes(ReadDocument& read, OnError onError, bool withLog)
      : read_(read), stopsAtError_(onError == OnError::kStop) {
    if (withLog) capture_.emplace();
  }

  void offered() override {
    if (capture_) capture_->takeTexts();
  }
  void built(document::gxzero::Node node, std::string pointer) override {
    if (isStopped_) return;
    read_.objects.push_back({std::move(pointer), read_.nodes.size(), records()});
    read_.nodes.push_back(std::move(node));
  }
  void failed(std::string pointer) override {
    if (isStopped_) return;
    ++read_.failedObjects;
    read_.objects.push_back({std::move(pointer), Object::kFailed, records()});
    isStopped_ = stopsAtError_;
  }

  std::vector<std::string> pointers() override {
    std::vector<std::string> pointers;
    pointers.reserve(read_.objects.size());
    for (const Object& object : read_.objects) pointers.push_back(object.pointer);
    return pointers;
  }

  /// Puts the objects into the order of the text.
  void place(const std::vector<reference_host::json::ValuePlace>& places,
             std::string_view text) override {
    std::vector<Object>& objects = read_.objects;
    std::vector<std::size_t> order(objects.size());
    for (std::size_t index = 0; index != order.size(); ++index) order[index] = index;
    const auto begin = [&](std::size_t index) { return places[index].value.begin; };
    std::sort(order.begin(), order.end(), [&](std::size_t left, std::size_t right) {
      return std::pair(begin(left).line, begin(left).column) <
             std::pair(begin(right).line, begin(right).column);
    });
    Offsets offsets(text);
    std::vector<Object> sorted;
    sorted.reserve(objects.size());
    for (const std::size_t index : order) {
      sorted.push_back(std::move(objects[index]));
      Object& object = sorted.back();
      object.line = begin(index).line;
      object.begin = offsets.of(begin(index));
      object.end = offsets.of(places[index].value.end);
    }
    objects = std::move(sorted);
  }

  /// Whether no record is missing: a part of them would be taken for all.
  bool haveAllRecords() const { return !capture_ || capture_->isComplete(); }

 private:
  std::vector<std::string> records() {
    return capture_ ? capture_->takeTexts() : std::vector<std::string>();
  }

  ReadDocument& read_;
  bool stopsAtError_;
  bool isStopped_ = false;
  std::optional<LogCapture> capture_;
};

/// How many of the elements that a builder passed over are controls or look like one.
std::size_t countPassedOver(const Knowledge& knowledge, const CheckAnswer& check) {
  const std::string_view text = check.document.content();
  const std::vector<Recognition>& recognitions = knowledge.recognitions();
  Offsets begins(text);
  Offsets ends(text);
  std::size_t count = 0;
  for (const auto& [problem, place] : check.problems) {
    if (problem.code != Code::kIgnoredMember) continue;
    const std::size_t begin = begins.of(place.begin);
    if (text[begin] != '{') continue;  // it begins with the name of a member, or is no object
    const auto object = reference_host::json::parse(text.substr(begin, ends.of(place.end) - begin));
    const auto* className = find_member(object, "className");
    const auto* word = className == nullptr ? nullptr : className->get_if<std::string>();
    const bool isKnown =
        word != nullptr && std::any_of(recognitions.begin(), recognitions.end(),
                                       [&](const auto& row) { return row.className == *word; });
    if (isKnown || looksLikeControl(object)) ++count;
  }
  return count;
}

}  // namespace

std::string ReadDocument::failure() const {
  if (!check.failure.empty()) return check.failure;
  if (check.problems.size() != 1 || check.problems.front().problem.code != Code::kSyntax) return {};
  const auto& [problem, place] = check.problems.front();
  return reference_host::json::ParseError(check.document.line + place.begin.line - 1,
                                          place.begin.column, problem.message)
      .what();
}

void ReadDocument::runOutOfMemory() {
  objects.clear();
  nodes.clear();
  failedObjects = passedOver = 0;
  check.runOutOfMemory();
}

ReadDocument readDocument(const Knowledge& knowledge, Document document, OnError onError,
                          bool withLog) {
  ReadDocument read;
  ObjectNotes notes(read, onError, withLog);
  read.check =
      checkOne(knowledge, std::move(document), reference_host::diagnosis::Warnings::kYes, &notes);
  try {
    read.passedOver = countPassedOver(knowledge, read.check);
  } catch (const std::bad_alloc&) {
    read.runOutOfMemory();
  }
  if (read.check.failure == kOutOfMemory || !notes.haveAllRecords()) read.runOutOfMemory();
  return read;
}

}  // namespace tessel_tool
