/// @file
/// Any bytes, as the text of a document that is checked.
///
/// Holds the check to this: it never throws; each object of which an import tells an error has at
/// least one error, and no other object has any; every place is in the text; what is told does not
/// depend on what was checked before.

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "check.hpp"
#include "reference_host/diagnosis/document_check.hpp"
#include "reference_host/diagnosis/syntax_hint.hpp"
#include "reference_host/json/parse.hpp"
#include "reference_host/json/text_places.hpp"
#include "support/all_builders.hpp"
#include "words.hpp"

namespace {

using foundation::json::Value;
using fuzz::require;
using reference_host::diagnosis::Knowledge;
using reference_host::diagnosis::Problem;
using reference_host::diagnosis::Warnings;
using reference_host::json::TextPlace;

const Knowledge& experienced() {
  static const Knowledge knowledge(test_support::allBuilders(), tessel_tool::knownWords());
  return knowledge;
}

std::vector<std::string> told(const Knowledge& knowledge, const Value& document,
                              std::string_view text) {
  std::vector<std::string> lines;
  for (const Problem& problem : checkDocument(knowledge, document, text, Warnings::kYes).problems) {
    lines.push_back(codeName(problem.code) + problem.member.value_or("-") + problem.message +
                    problem.hint.value_or("-"));
  }
  return lines;
}

void requirePlace(const std::vector<std::size_t>& lineLengths, const TextPlace& place) {
  require(place.line >= 1 && place.line <= lineLengths.size(), "a place's line is in the text");
  require(place.column >= 1 && place.column <= lineLengths[place.line - 1] + 1,
          "a place's column is in its line");
}

/// How many bytes each line has, which is no less than its characters.
std::vector<std::size_t> lineLengthsOf(std::string_view text) {
  std::vector<std::size_t> lengths{0};
  for (const char character : text) {
    if (character == '\n') {
      lengths.push_back(0);
    } else {
      ++lengths.back();
    }
  }
  return lengths;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(fuzz::asText(data, size));
  reference_host::json::ParseReport report;
  Value document;
  try {
    document = reference_host::json::parse(text, report);
  } catch (const reference_host::json::ParseError& error) {
    reference_host::diagnosis::hintForSyntax(report.text, error);
    return 0;
  }
  const auto problems =
      checkDocument(experienced(), document, report.text, Warnings::kYes).problems;
  std::set<std::string> wrong;
  std::vector<std::string_view> pointers;
  for (const Problem& problem : problems) {
    if (isError(problem.code)) wrong.insert(problem.pointer);
    pointers.push_back(problem.pointer);
    pointers.push_back(problem.member ? *problem.member : problem.pointer);
  }
  std::set<std::string> failed;
  const auto imported = reference_host::importer::importDocument(
      test_support::allBuilders(), gx::zero::Model::create(), document);
  for (const auto& error : imported.errors) failed.insert(error.pointer);
  require(wrong == failed, "an object has an error exactly if an import fails on it");

  const auto lineLengths = lineLengthsOf(report.text);
  for (const auto& place : reference_host::json::findValues(report.text, pointers)) {
    requirePlace(lineLengths, place.value.begin);
    requirePlace(lineLengths, place.value.end);
  }
  reference_host::diagnosis::OfferedObjects offered(experienced(), document);
  for (const auto& duplicate : reference_host::json::findDuplicates(report.text)) {
    offered.around(duplicate.pointer);
  }
  const Knowledge fresh(test_support::allBuilders(), tessel_tool::knownWords());
  require(told(experienced(), document, report.text) == told(fresh, document, report.text),
          "what is told does not depend on what was checked before");
  return 0;
}
