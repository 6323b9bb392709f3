#include "check_answer.hpp"

#include <algorithm>
#include <new>
#include <optional>
#include <utility>

#include "console.hpp"
#include "located_error.hpp"
#include "reference_host/diagnosis/wording.hpp"
#include "reference_host/json/parse.hpp"
#include "reference_host/json/pointer.hpp"
#include "reference_host/json/text_writer.hpp"

namespace tessel_tool {

namespace {

using foundation::json::Value;
using reference_host::diagnosis::Code;
using reference_host::diagnosis::Knowledge;
using reference_host::diagnosis::Problem;
using reference_host::diagnosis::Warnings;
using reference_host::json::JsonWriter;

/// The members that a later one of their object replaces.
std::vector<PlacedProblem> duplicatesIn(const Knowledge& knowledge, const Value& value,
                                        std::string_view text, std::size_t firstLine) {
  reference_host::diagnosis::OfferedObjects offered(knowledge, value);
  std::vector<PlacedProblem> found;
  for (const auto& duplicate : reference_host::json::findDuplicates(text)) {
    std::string name;
    reference_host::json::appendText(name, duplicate.name);
    Problem problem{Code::kDuplicateMember,
                    offered.around(duplicate.pointer),
                    duplicate.pointer,
                    name + " is there again further on, and the last one holds",
                    "remove one of them; the next is at " +
                        reference_host::diagnosis::lineAndColumn(duplicate.next.begin, firstLine),
                    {},
                    {},
                    {},
                    true};
    found.push_back({std::move(problem), duplicate.key});
  }
  return found;
}

void writeProblem(JsonWriter& writer, const PlacedProblem& placed, std::size_t firstLine) {
  const auto& [problem, place] = placed;
  writer.beginObject();
  writer.key("severity").value(isError(problem.code) ? "error" : "warning");
  writer.key("code").value(codeName(problem.code));
  writer.key("pointer").value(problem.pointer).key("member");
  writeOptional(writer, problem.member);
  writer.key("line").value(firstLine + place.begin.line - 1);
  writer.key("column").value(place.begin.column);
  writer.key("endLine").value(firstLine + place.end.line - 1);
  writer.key("endColumn").value(place.end.column);
  writer.key("message").value(problem.message).key("hint");
  writeOptional(writer, problem.hint);
  writer.key("builder");
  writeOptional(writer, problem.builder);
  writer.key("held");
  writeOptional(writer, problem.held);
  writer.key("wanted");
  writeOptional(writer, problem.wanted);
  writer.endObject();
}

void check(CheckAnswer& answer, const Knowledge& knowledge, Warnings warnings,
           CheckedObjects* objects) {
  try {
    const Value value = answer.document.parse();
    const std::string_view text = answer.document.content();
    auto result = checkDocument(knowledge, value, text, warnings, answer.document.line, objects);
    answer.objects = result.objects;
    answer.claimed = result.claimed;
    if (objects == nullptr) {
      answer.problems = place(std::move(result.problems), text);
    } else {
      std::vector<reference_host::json::ValuePlace> places;
      answer.problems = place(std::move(result.problems), text, objects->pointers(), &places);
      objects->place(places, text);
    }
    if (warnings == Warnings::kYes && answer.document.duplicates.count != 0) {
      for (PlacedProblem& duplicate : duplicatesIn(knowledge, value, text, answer.document.line)) {
        answer.problems.push_back(std::move(duplicate));
      }
      sortByPlace(answer.problems);
    }
  } catch (const reference_host::json::ParseError& error) {
    answer.problems.push_back(syntaxProblem(error, answer.document));
  }
  const auto isAnError = [](const PlacedProblem& placed) { return isError(placed.problem.code); };
  answer.errors = static_cast<std::size_t>(
      std::count_if(answer.problems.begin(), answer.problems.end(), isAnError));
  answer.warnings = answer.problems.size() - answer.errors;
}

}  // namespace

void CheckAnswer::runOutOfMemory() {
  std::string().swap(document.text);
  problems.clear();
  objects = claimed = errors = warnings = 0;
  failure = kOutOfMemory;
}

CheckAnswer checkOne(const Knowledge& knowledge, Document document, Warnings warnings,
                     CheckedObjects* objects) {
  CheckAnswer answer;
  answer.document = std::move(document);
  answer.failure = answer.document.readError;
  if (!answer.failure.empty()) return answer;
  try {
    check(answer, knowledge, warnings, objects);
  } catch (const std::bad_alloc&) {
    answer.runOutOfMemory();
  }
  return answer;
}

void appendAsJson(std::string& out, const CheckAnswer& answer, bool oneLine) {
  JsonWriter writer(out, oneLine ? JsonWriter::Layout::kCompact : JsonWriter::Layout::kPretty);
  writer.beginObject();
  writer.key("document").value(reference_host::json::withBytesEscaped(answer.document.name));
  writer.key("problems").beginArray();
  for (const PlacedProblem& problem : answer.problems) {
    writeProblem(writer, problem, answer.document.line);
  }
  writer.endArray();
  writer.key("summary").beginObject();
  writer.key("objects").value(answer.objects).key("claimed").value(answer.claimed);
  writer.key("errors").value(answer.errors).key("warnings").value(answer.warnings);
  writer.endObject();
  writer.endObject();
  out += '\n';
}

void appendAsText(std::string& out, const CheckAnswer& answer) {
  appendAsText(out, answer.problems,
               {answer.document.path, answer.document.content(), answer.document.line});
}

}  // namespace tessel_tool
