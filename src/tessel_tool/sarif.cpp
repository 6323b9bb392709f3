#include "sarif.hpp"

#include <cstddef>

#include "input.hpp"
#include "reference_host/json/text_writer.hpp"

namespace tessel_tool {

namespace {

using reference_host::diagnosis::Code;
using reference_host::json::JsonWriter;

struct RuleText {
  Code code;
  const char* brief;
  const char* help;
};

/// In the order of the codes.
constexpr RuleText kRules[] = {
    {Code::kSyntax, "The text is no JSON.",
     "Nothing of the document is imported. Correct it where parsing stopped, or just before."},
    {Code::kWrongType, "A member holds another type than is wanted.",
     "The control is not built. Write a value of the type that the message names."},
    {Code::kMissingMember, "A required member is not there.",
     "The control is not built. Add the member, or correct its name."},
    {Code::kCannotTell, "A builder could not tell whether it can build the object.",
     "Nobody builds the object. Give it what it is recognised by: a class name that is text, and "
     "for "
     "generic controls a context with a type."},
    {Code::kBuildFailed, "The object could not be built.",
     "The builder failed for a reason that is no value of a wrong type; see its message."},
    {Code::kUnknownClass, "Nobody builds objects of this class.",
     "The object looks like a control, but is passed over. Correct its class name."},
    {Code::kUnknownType, "Nobody builds generic controls of this type.",
     "The control is passed over. Correct the type in its context."},
    {Code::kUnknownMember, "A member that is never read there.",
     "It has no effect. Correct its name, or move it to where it is read."},
    {Code::kIgnoredMember, "A member that is known, but not read here.",
     "It has no effect. Add what it depends on, correct its value, or remove it."},
    {Code::kDuplicateMember, "An object has two members of one name.",
     "The last one holds. Remove the others."},
    {Code::kDuplicateId, "Two controls have one id.", "Give each control an id of its own."},
    {Code::kUnlikelyValue, "A value that can hardly be meant.",
     "It is stored as it is. See whether it is what you mean."},
};

const char* levelOf(Code code) {
  return isError(code) ? "error" : "warning";
}

void writeText(JsonWriter& writer, const char* key, std::string_view text) {
  writer.key(key).beginObject().key("text").value(text).endObject();
}

void writeArtifact(JsonWriter& writer, std::string_view path) {
  writer.key("artifactLocation").beginObject();
  writer.key("uri").value(uriOf(path));
  if (path == kStandardInput) writeText(writer, "description", "standard input");
  writer.endObject();
}

void writeProperty(JsonWriter& writer, const char* key, const std::optional<std::string>& text) {
  if (text) writer.key(key).value(*text);
}

void writeProblem(JsonWriter& writer, const PlacedProblem& placed, const Document& document) {
  const auto& [problem, place] = placed;
  const std::string& member = problem.member ? *problem.member : problem.pointer;
  writer.beginObject();
  writer.key("ruleId").value(codeName(problem.code));
  writer.key("ruleIndex").value(static_cast<std::size_t>(problem.code));
  writer.key("level").value(levelOf(problem.code));
  writeText(writer, "message", problem.message + (problem.hint ? "; " + *problem.hint : ""));

  writer.key("locations").beginArray().beginObject();
  writer.key("physicalLocation").beginObject();
  writeArtifact(writer, document.path);
  writer.key("region").beginObject();
  writer.key("startLine").value(document.line + place.begin.line - 1);
  writer.key("startColumn").value(place.begin.column);
  writer.key("endLine").value(document.line + place.end.line - 1);
  writer.key("endColumn").value(place.end.column);
  writer.endObject().endObject();
  if (!member.empty()) {
    writer.key("logicalLocations").beginArray().beginObject();
    writer.key("fullyQualifiedName").value(member).endObject().endArray();
  }
  writer.endObject().endArray();

  writer.key("partialFingerprints").beginObject();
  // The members of a line are told from those of the other lines.
  const bool isLine = document.name != document.path;
  const std::string holder =
      isLine ? reference_host::json::withBytesEscaped(document.name) + ' ' : std::string();
  writer.key("codeAndMember/v1")
      .value(codeName(problem.code) + (' ' + holder + member))
      .endObject();
  writer.key("properties").beginObject();
  writer.key("pointer").value(problem.pointer);
  writeProperty(writer, "builder", problem.builder);
  writeProperty(writer, "held", problem.held);
  writeProperty(writer, "wanted", problem.wanted);
  writeProperty(writer, "hint", problem.hint);
  writer.endObject().endObject();
}

}  // namespace

std::string sarifBegin() {
  std::string out =
      "{\"version\":\"2.1.0\",\"$schema\":\"https://json.schemastore.org/sarif-2.1.0.json\",\n"
      "\"runs\":[{\"columnKind\":\"unicodeCodePoints\",\n\"tool\":";
  JsonWriter writer(out);
  writer.beginObject().key("driver").beginObject();
  writer.key("name").value("tessel").key("version").value(TESSEL_VERSION);
  writer.key("rules").beginArray();
  for (const RuleText& rule : kRules) {
    writer.beginObject().key("id").value(codeName(rule.code));
    writeText(writer, "shortDescription", rule.brief);
    writeText(writer, "help", rule.help);
    writer.key("defaultConfiguration").beginObject();
    writer.key("level").value(levelOf(rule.code)).endObject().endObject();
  }
  writer.endArray().endObject().endObject();
  out += ",\n\"results\":[";
  return out;
}

void appendAsSarif(std::string& out, const CheckAnswer& answer) {
  for (const PlacedProblem& problem : answer.problems) {
    out += ",\n";
    JsonWriter writer(out);
    writeProblem(writer, problem, answer.document);
  }
}

std::string sarifEnd(const std::vector<std::pair<std::string, std::string>>& unreadable,
                     ExitStatus status) {
  std::string out = "\n],\n\"invocations\":";
  JsonWriter writer(out);
  writer.beginArray().beginObject();
  writer.key("executionSuccessful").value(unreadable.empty());
  writer.key("exitCode").value(static_cast<int>(status));
  if (!unreadable.empty()) {
    writer.key("toolExecutionNotifications").beginArray();
    for (const auto& [path, reason] : unreadable) {
      writer.beginObject().key("level").value("error");
      writeText(writer, "message", reason);
      writer.key("locations").beginArray().beginObject().key("physicalLocation").beginObject();
      writeArtifact(writer, path);
      writer.endObject().endObject().endArray().endObject();
    }
    writer.endArray();
  }
  writer.endObject().endArray();
  out += "}]}\n";
  return out;
}

std::string uriOf(std::string_view path) {
  constexpr std::string_view kPlain =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-._~/";
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string uri;
  if (!path.empty() && path.front() == '/') {
    // No authority may be read out of further slashes.
    uri = "file://";
    path.remove_prefix(path.find_first_not_of('/') == std::string_view::npos
                           ? path.size() - 1
                           : path.find_first_not_of('/') - 1);
  }
  for (const char character : path) {
    if (kPlain.find(character) != std::string_view::npos) {
      uri += character;
      continue;
    }
    const auto byte = static_cast<unsigned char>(character);
    uri += '%';
    uri += kDigits[byte / 16U];
    uri += kDigits[byte % 16U];
  }
  return uri;
}

}  // namespace tessel_tool
