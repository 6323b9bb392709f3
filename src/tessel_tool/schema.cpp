#include "schema.hpp"

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "kind_schema.hpp"
#include "reference_host/diagnosis/rules.hpp"
#include "reference_host/diagnosis/unclaimed_object.hpp"
#include "schema_terms.hpp"

namespace tessel_tool {

using foundation::json::traits;
using foundation::json::Value;
using reference_host::diagnosis::ClassFate;
using reference_host::diagnosis::Fate;
using reference_host::diagnosis::Knowledge;
using reference_host::diagnosis::patternOf;
using reference_host::diagnosis::Recognition;
using reference_host::diagnosis::State;
using reference_host::diagnosis::States;

namespace {

const char* const kClassName = "/className";
const char* const kContext = "/context";
const char* const kType = "/context/type";

/// What means something in a regular expression.
constexpr std::string_view kPatternSigns = R"(\/^$.*+?()[]{}|)";

const std::string kObject = traits<Value::Object>::name;

/// A regular expression for one of the names, which are in small letters, in any case.
std::string inAnyCase(const std::set<std::string>& names) {
  std::string pattern;
  for (const std::string& name : names) {
    pattern += pattern.empty() ? "^(" : "|";
    for (const char letter : name) {
      if (letter >= 'a' && letter <= 'z') {
        ((pattern += '[') += letter) += static_cast<char>(letter - 'a' + 'A');
        pattern += ']';
      } else {
        if (kPatternSigns.find(letter) != std::string_view::npos) pattern += '\\';
        pattern += letter;
      }
    }
  }
  return pattern + ")$";
}

/// Writes the schema of any document.
class DocumentSchema {
 public:
  DocumentSchema(const Knowledge& knowledge, Strictness strictness)
      : knowledge_(knowledge),
        strictness_(strictness),
        fates_(learnFates(knowledge)),
        classStates_(reference_host::diagnosis::statesOf(kClassName, knowledge.words())),
        contextStates_(reference_host::diagnosis::statesOf(kContext, knowledge.words())),
        typeStates_(reference_host::diagnosis::statesOf(kType, knowledge.words())) {}

  Value write(const std::string& bundle) {
    define("value") = Value::Object{
        {"description", "Objects that nobody builds are looked into, and so are arrays."},
        {"items", reference("value")},
        {"if", Value::Object{{"type", "object"}}},
        {"then", reference("object")}};
    define("members") = members();
    writeObject();
    at(schema_, "$schema") = "https://json-schema.org/draft/2020-12/schema";
    at(schema_, "title") = "Documents for " + bundle;
    at(schema_, "description") =
        strictness_ == Strictness::kStrict
            ? "Documents that are built without an error and in whose controls nothing is unknown."
            : "Documents that are built without an error.";
    at(schema_, "$ref") = "#/$defs/value";
    return std::move(schema_);
  }

 private:
  Value& define(const std::string& name) { return at(at(schema_, "$defs"), name); }

  /// Of an object that nobody claims. A strict schema refuses those that look like something known.
  Value members() const {
    Value schema = Value::Object{{"additionalProperties", reference("value")}};
    if (strictness_ == Strictness::kAsImport) return schema;
    for (const auto& mark : reference_host::diagnosis::controlMarks()) {
      append(at(schema, "not"), "anyOf", having(stepsOf(patternOf(mark)), Value::Object()));
    }
    const std::set<std::string> names =
        reference_host::diagnosis::likelyNames(knowledge_.recognitions());
    if (names.empty()) return schema;
    const Value name = Value::Object{{"type", "string"}, {"pattern", inAnyCase(names)}};
    append(at(schema, "not"), "anyOf", having({"className"}, name));
    return schema;
  }

  void writeObject() {
    Value object = Value::Object();
    States allowed;
    States walked;
    Value::Array names;
    for (const ClassFate& fate : fates_) {
      const State& className = fate.className;
      const Fate::Kind kind = fate.fates.front().second.kind;
      if (fate.isOne() && kind != Fate::Kind::kClaimed) {
        // What is refused in any case need not be told apart from what is walked.
        if (kind == Fate::Kind::kWalked) allowed.insert(className);
        walked.insert(className);
        continue;
      }
      allowed.insert(className);
      if (!className.word.empty()) names.emplace_back(className.word);
      const Recognition* recognition = fate.fates.front().second.recognition;
      append(object, "allOf",
             Value::Object{
                 {"if", wherePlaceIs({"className"}, {className}, classStates_)},
                 {"then", fate.isOne() ? kindReference(*recognition) : classReference(fate)}});
    }
    append(object, "allOf",
           Value::Object{{"if", wherePlaceIs({"className"}, walked, classStates_)},
                         {"then", reference("members")}});
    restrict(object, {"className"}, allowed, classStates_);
    Value& className = inside(object, {"className"});
    at(className, "title") = "Class name";
    at(className, "description") = "What the object is. Objects of other classes are looked into.";
    suggest(className, std::move(names));
    define("object") = std::move(object);
  }

  static void suggest(Value& schema, Value::Array words) {
    if (words.empty() || schema.hasOwnProperty("enum") || schema.hasOwnProperty("anyOf")) return;
    at(schema, "anyOf") = Value::Array{Value::Object{{"enum", std::move(words)}}, Value::Object()};
  }

  Value kindReference(const Recognition& recognition) {
    std::string name = recognition.className;
    if (recognition.type) name += '.' + *recognition.type;
    if (!std::as_const(define(name)).get_if<Value::Object>()) {
      define(name) = kindSchemaOf(knowledge_, recognition, strictness_);
    }
    return reference(name);
  }

  /// Objects of a class that says not enough.
  Value classReference(const ClassFate& fate) {
    // A strict schema knows all types of a class that is told apart by them.
    const bool closed = strictness_ == Strictness::kStrict &&
                        isGeneric(fate.className.word, knowledge_.recognitions());
    const std::string definition =
        "any." + (fate.className.word.empty() ? fate.className.type : fate.className.word);
    Value schema = Value::Object();
    States contexts;
    States types;
    Value::Array typeNames;
    std::map<std::string, std::pair<Value, Places>> outcomes;
    for (const auto& [states, outcome] : fate.fates) {
      const auto& [context, type] = states;
      if (outcome.kind == Fate::Kind::kError) continue;
      if (outcome.kind == Fate::Kind::kWalked && closed) continue;
      contexts.insert(context);
      if (context.type == kObject) types.insert(type);
      Value then = reference("members");
      if (outcome.kind == Fate::Kind::kClaimed) {
        then = kindReference(*outcome.recognition);
        if (!type.word.empty()) typeNames.emplace_back(type.word);
      }
      const std::string key = *then["$ref"].get_if<std::string>();
      auto& [reference, places] = outcomes[key];
      reference = std::move(then);
      (context.type == kObject ? places.types : places.contexts)
          .insert(context.type == kObject ? type : context);
    }
    restrict(schema, {"context"}, contexts, contextStates_);
    restrict(schema, {"context", "type"}, types, typeStates_);
    Value& type = inside(schema, {"context", "type"});
    at(type, "title") = "Type";
    at(type, "description") = "Which kind of control it is.";
    suggest(type, std::move(typeNames));
    for (auto& [key, outcome] : outcomes) {
      append(schema, "allOf",
             Value::Object{{"if", test(outcome.second)}, {"then", std::move(outcome.first)}});
    }
    define(definition) = std::move(schema);
    return reference(definition);
  }

  struct Places {
    States contexts;  ///< that are no objects
    States types;
  };

  Value test(const Places& places) const {
    Value::Array tests;
    if (!places.contexts.empty()) {
      tests.push_back(wherePlaceIs({"context"}, places.contexts, contextStates_));
    }
    if (!places.types.empty()) {
      Value inObject = wherePlaceIs({"context", "type"}, places.types, typeStates_);
      if (places.types.count(kAbsent) != 0) {
        inObject = allOf(
            {std::move(inObject), wherePlaceIs({"context"}, {{kObject, {}}}, contextStates_)});
      }
      tests.push_back(std::move(inObject));
    }
    if (tests.size() == 1) return std::move(tests.front());
    return Value::Object{{"anyOf", std::move(tests)}};
  }

  const Knowledge& knowledge_;
  Strictness strictness_;
  std::vector<ClassFate> fates_;
  States classStates_;
  States contextStates_;
  States typeStates_;
  Value schema_;
};

}  // namespace

Value schemaOf(const Knowledge& knowledge, const std::string& bundle, Strictness strictness) {
  return DocumentSchema(knowledge, strictness).write(bundle);
}

}  // namespace tessel_tool
