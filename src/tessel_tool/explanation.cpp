#include "explanation.hpp"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <new>
#include <utility>

#include "reference_host/export/export.hpp"
#include "reference_host/json/pointer.hpp"
#include "reference_host/json/text_writer.hpp"
#include "reference_host/logging/log_capture.hpp"
#include "text_form.hpp"

namespace tessel_tool {

namespace {

using foundation::json::Value;
using reference_host::exporting::Exporter;
using reference_host::importer::messageOf;
using reference_host::importer::NamedBuilder;
using reference_host::json::JsonWriter;
using reference_host::logging::LogCapture;

/// @throws std::bad_alloc where a part of the records would be taken for the whole.
Records recordsOf(LogCapture& capture) {
  if (!capture.isComplete()) throw std::bad_alloc();
  return capture.takeTexts();
}

BuilderAnswer ask(const NamedBuilder& builder, const Value& value) {
  LogCapture capture;
  BuilderAnswer answer;
  answer.builder = builder.name();
  try {
    answer.canBuild = builder.canBuild(value);
  } catch (const std::bad_alloc&) {
    throw;
  } catch (...) {
    answer.error = messageOf(std::current_exception());
  }
  answer.log = recordsOf(capture);
  return answer;
}

BuildOutcome buildWith(const NamedBuilder& builder, const Value& value) {
  LogCapture capture;
  BuildOutcome outcome;
  outcome.model = gx::zero::Model::create();
  try {
    outcome.node = builder.build(outcome.model, value);
  } catch (const std::bad_alloc&) {
    throw;
  } catch (...) {
    outcome.error = messageOf(std::current_exception());
  }
  outcome.log = recordsOf(capture);
  return outcome;
}

void writeRecords(JsonWriter& writer, const Records& records) {
  writer.beginArray();
  for (const std::string& record : records) writer.value(record);
  writer.endArray();
}

void writeAnswer(JsonWriter& writer, const BuilderAnswer& answer) {
  writer.beginObject();
  writer.key("builder").value(answer.builder);
  if (answer.canBuild) {
    writer.key("canBuild").value(*answer.canBuild).key("error").null();
  } else {
    writer.key("canBuild").null().key("error").value(answer.error);
  }
  writeLocation(writer, answer.location);
  writer.key("log");
  writeRecords(writer, answer.log);
  writer.endObject();
}

void writeBuild(JsonWriter& writer, const BuildOutcome& build) {
  Exporter exporter;
  writer.beginObject();
  writer.key("node");
  exporter.writeJson(writer, build.node);
  writer.key("error");
  if (build.error) {
    writer.value(*build.error);
  } else {
    writer.null();
  }
  writeLocation(writer, build.location);
  writer.key("log");
  writeRecords(writer, build.log);
  writer.key("model").beginArray();
  for (const auto& root : build.model.get()->getRoots()) exporter.writeJson(writer, root);
  writer.endArray();
  writer.endObject();
}

const char* kindOf(const Value& value) {
  if (value.get_if<Value::Object>() != nullptr) return "an object";
  if (value.get_if<Value::Array>() != nullptr) return "an array";
  if (value.get_if<std::string>() != nullptr) return "a text";
  if (value.get_if<double>() != nullptr) return "a number";
  if (value.get_if<bool>() != nullptr) return "a boolean";
  return "null";
}

/// A member in a few words, its text in full.
std::string describeMember(const Value& holder, const char* key) {
  const std::string name = '"' + std::string(key) + '"';
  if (!holder.hasOwnProperty(key)) return "no " + name;
  const Value& member = holder[key];
  const auto* text = member.get_if<std::string>();
  if (text == nullptr) return name + " is " + kindOf(member);
  std::string description = name + ": ";
  reference_host::json::appendVisible(description, *text, reference_host::json::Quotes::kAround);
  return description;
}

/// What the value is, with the members by which controls are told apart.
std::string describe(const Value& value) {
  std::string description = kindOf(value);
  if (value.get_if<Value::Object>() == nullptr) return description;
  description += ", " + describeMember(value, "className");
  const Value& context = value["context"];
  if (context.get_if<Value::Object>() == nullptr) {
    return description + ", " + describeMember(value, "context");
  }
  return description + ", in \"context\" " + describeMember(context, "type");
}

void appendAnswer(std::string& out, const BuilderAnswer& answer) {
  out.append("  ").append(visible(shortName(answer.builder)));
  if (answer.canBuild) {
    out += *answer.canBuild ? ": yes\n" : ": no\n";
  } else {
    out += ": error, " + visible(answer.error) + '\n';
  }
  for (const std::string& record : answer.log) appendRecord(out, record);
}

std::string countOf(std::size_t others, std::size_t all) {
  if (others == all) return "all " + std::to_string(all);
  return std::to_string(others) + (others == 1 ? " other" : " others");
}

void appendBuild(std::string& out, const BuildOutcome& build, const std::string& builder) {
  Exporter exporter;
  out += "build by " + visible(shortName(builder)) + '\n';
  for (const std::string& record : build.log) appendRecord(out, record);
  if (build.error) {
    out += "  failed: " + visible(*build.error) + '\n';
  } else if (!build.node) {
    out += "  returned no node\n";
  } else {
    out += "  returned\n";
    exporter.appendTree(out, build.node, 2);
  }
  const auto roots = build.model.get()->getRoots();
  if (roots.size() == 1 && roots.front() == build.node) {
    out += "the model holds this node and nothing else\n";
    return;
  }
  out += roots.empty() ? "the model is empty\n" : "the model holds\n";
  for (const auto& root : roots) exporter.appendTree(out, root, 2);
}

/// Whether an import stops at an object: a builder claims it or cannot tell.
bool concerns(const std::vector<NamedBuilder>& builders, const Value& object) {
  return std::any_of(builders.begin(), builders.end(), [&](const NamedBuilder& builder) {
    try {
      return builder.canBuild(object);
    } catch (const std::bad_alloc&) {
      throw;
    } catch (...) {
      return true;
    }
  });
}

/// The pointer of the first object inside a value that concerns a builder, or else of the first
/// object; nothing where there is none.
std::optional<std::string> objectInside(const std::vector<NamedBuilder>& builders,
                                        const Value& value) {
  using reference_host::json::appendToken;
  std::optional<std::string> first;
  std::vector<std::pair<const Value*, std::string>> open{{&value, {}}};
  while (!open.empty()) {
    const auto [next, pointer] = std::move(open.back());
    open.pop_back();
    const auto firstChild = static_cast<std::ptrdiff_t>(open.size());
    const auto add = [&, &around = pointer](const Value& child, const std::string& token) {
      std::string inner = around;
      appendToken(inner, token);
      open.emplace_back(&child, std::move(inner));
    };
    if (const auto* members = next->get_if<Value::Object>()) {
      if (next != &value) {
        if (concerns(builders, *next)) return pointer;
        if (!first) first = pointer;
      }
      for (const auto& [name, member] : *members) add(member, name);
    } else if (const auto* elements = next->get_if<Value::Array>()) {
      for (std::size_t index = 0; index != elements->size(); ++index) {
        add((*elements)[index], std::to_string(index));
      }
    }
    std::reverse(open.begin() + firstChild, open.end());
  }
  return first;
}

}  // namespace

Explanation explain(const std::vector<NamedBuilder>& builders, const Value& value) {
  Explanation explanation;
  const NamedBuilder* claimer = nullptr;
  for (const NamedBuilder& builder : builders) {
    explanation.answers.push_back(ask(builder, value));
    if (claimer == nullptr && explanation.answers.back().canBuild == true) claimer = &builder;
  }
  if (claimer != nullptr) {
    explanation.claimedBy = claimer->name();
    explanation.build = buildWith(*claimer, value);
  }
  return explanation;
}

void locateErrors(Explanation& explanation, const reference_host::diagnosis::Knowledge& knowledge,
                  const Value& value, const std::string& pointer, const Document& document) {
  using reference_host::importer::Step;
  std::vector<reference_host::importer::ImportError> errors;
  std::vector<Location*> locations;
  for (BuilderAnswer& answer : explanation.answers) {
    if (answer.canBuild) continue;
    errors.push_back({pointer, answer.builder, Step::kCanBuild, answer.error});
    locations.push_back(&answer.location);
  }
  if (explanation.build && explanation.build->error) {
    errors.push_back({pointer, *explanation.claimedBy, Step::kBuild, *explanation.build->error});
    locations.push_back(&explanation.build->location);
  }
  std::vector<LocatedError> located = locate(knowledge, errors, &value, document, Tell::kPeople);
  for (std::size_t index = 0; index != located.size(); ++index) {
    *locations[index] = std::move(located[index].location);
  }
  if (located.empty() && !explanation.build) {
    const auto inner = objectInside(knowledge.builders(), value);
    if (inner)
      explanation.told =
          "hint: explain one object of it: --pointer " + visible(pointer + *inner) + '\n';
  }
  if (located.empty()) return;
  const bool buildFailed = explanation.build && explanation.build->error;
  LocatedError& told = buildFailed ? located.back() : located.front();
  std::vector<PlacedProblem> problems{*told.told};
  showNumbersAsWritten(problems, document.content());
  appendAsText(explanation.told, problems, originOf(document));
}

void appendAsJson(std::string& out, const Explanation& explanation, bool oneLine) {
  JsonWriter writer(out, oneLine ? JsonWriter::Layout::kCompact : JsonWriter::Layout::kPretty);
  writer.beginObject();
  writer.key("builders").beginArray();
  for (const BuilderAnswer& answer : explanation.answers) writeAnswer(writer, answer);
  writer.endArray();
  writer.key("claimedBy");
  if (explanation.claimedBy) {
    writer.value(*explanation.claimedBy);
  } else {
    writer.null();
  }
  if (explanation.build) {
    writer.key("build");
    writeBuild(writer, *explanation.build);
  }
  writer.endObject();
  out += '\n';
}

void appendAsText(std::string& out, const Explanation& explanation, const Value& value,
                  Answers answers) {
  out += "the value is " + describe(value) + '\n';
  out += "can they build it?\n";
  std::size_t others = 0;
  for (const BuilderAnswer& answer : explanation.answers) {
    if (answers == Answers::kAll || answer.canBuild != false) {
      appendAnswer(out, answer);
    } else {
      ++others;
    }
  }
  if (others != 0) out += "  " + countOf(others, explanation.answers.size()) + ": no\n";
  if (explanation.build) {
    appendBuild(out, *explanation.build, *explanation.claimedBy);
  } else {
    out += "nobody builds it\n";
  }
  out += explanation.told;
}

}  // namespace tessel_tool
