/// @file
/// Any bytes, as the text of a document: parsed, imported with all builders, exported, and
/// parsed again.
///
/// Holds the code to this: a text is refused with `ParseError` alone, at a place that it has, and
/// exactly if the syntax check refuses it too; duplicate members are found as they are counted;
/// what is parsed, written and parsed again is equal; import and export never throw, and what they
/// give does not depend on the diagnostics; no handle is left behind.

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "check.hpp"
#include "reference_host/export/export.hpp"
#include "reference_host/importer/importer.hpp"
#include "reference_host/json/parse.hpp"
#include "reference_host/json/syntax_check.hpp"
#include "reference_host/json/text_places.hpp"
#include "reference_host/json/text_writer.hpp"
#include "reference_host/logging/log_capture.hpp"
#include "support/all_builders.hpp"

namespace {

using foundation::json::Value;
using fuzz::require;
using fuzz::requireEqual;
using reference_host::json::ParseError;

/// What the syntax check says of the text; empty when it finds no fault.
std::string faultOf(std::string_view text) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
    text.remove_prefix(kByteOrderMark.size());
  }
  try {
    reference_host::json::checkSyntax(text);
    return {};
  } catch (const ParseError& error) {
    return error.what();
  }
}

std::optional<Value> parsed(std::string_view text) {
  const std::string fault = faultOf(text);
  try {
    reference_host::json::ParseReport report;
    Value value = reference_host::json::parse(text, report);
    requireEqual(fault, "", "what is parsed has no fault");
    require(reference_host::json::findDuplicates(report.text).size() == report.duplicateMembers,
            "every duplicate member that is counted is found");
    return value;
  } catch (const ParseError& error) {
    requireEqual(error.what(), fault, "a refusal is the syntax check's");
    const auto lines = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1;
    require(error.line() >= 1 && error.line() <= lines, "the place of a refusal is in the text");
    require(error.column() >= 1 && error.column() <= text.size() + 1, "and so is its column");
    return std::nullopt;
  }
}

void requireSameWhenWritten(const Value& value) {
  require(reference_host::json::parse(foundation::json::pretty_print(value)) == value,
          "a pretty-printed value parses back to an equal one");
  std::string compact;
  reference_host::json::JsonWriter(compact).json(value);
  require(reference_host::json::parse(compact) == value,
          "a written value parses back to an equal one");
}

/// Imports into a model of its own and writes down all that came of it.
std::string imported(const Value& document) {
  const auto model = gx::zero::Model::create();
  std::string report;
  {
    const auto result =
        reference_host::importer::importDocument(test_support::allBuilders(), model, document);
    require(result.nodes.size() == result.summary.built, "each object that is built is a node");
    require(result.errors.size() == result.summary.failed, "each object that fails is an error");
    for (const auto& error : result.errors) {
      report += error.pointer + ": " + error.builder + ": " + error.message + "\n";
    }
    for (const auto& node : result.nodes) {
      const std::string json = reference_host::exporting::toJson(node);
      require(reference_host::json::parse(json)["class"].get_if<std::string>() != nullptr,
              "an exported node is an object with a class");
      report += json + "\n";
      reference_host::exporting::Exporter().appendTree(report, node);
    }
  }
  require(model.get()->getHeldElementCount() == 0, "no handle is left behind");
  for (const auto& root : model.get()->getRoots()) {
    report += reference_host::exporting::toJson(root) + "\n";
  }
  return report;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::optional<Value> document = parsed(fuzz::asText(data, size));
  if (!document) return 0;
  requireSameWhenWritten(*document);
  const std::string report = imported(*document);
  const reference_host::logging::LogCapture capture;
  requireEqual(imported(*document), report, "an import does not depend on the diagnostics");
  return 0;
}
