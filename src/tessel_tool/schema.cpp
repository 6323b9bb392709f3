#include "schema.hpp"

#include <algorithm>
#include <array>
#include <iterator>
#include <map>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

#include "member_prose.hpp"
#include "reference_host/diagnosis/rules.hpp"
#include "reference_host/diagnosis/wording.hpp"
#include "reference_host/json/pointer.hpp"
#include "reference_host/json/text_writer.hpp"

namespace tessel_tool {

namespace {

using foundation::json::Null;
using foundation::json::traits;
using foundation::json::Undefined;
using foundation::json::Value;
using reference_host::diagnosis::ClassFate;
using reference_host::diagnosis::Condition;
using reference_host::diagnosis::Fate;
using reference_host::diagnosis::Kind;
using reference_host::diagnosis::Knowledge;
using reference_host::diagnosis::Recognition;
using reference_host::diagnosis::Rule;
using reference_host::diagnosis::Rules;
using reference_host::diagnosis::State;
using reference_host::diagnosis::States;

using Steps = std::vector<std::string>;

constexpr const char* kElement = "*";
const char* const kClassName = "/className";
const char* const kContext = "/context";
const char* const kType = "/context/type";

const State kAbsent{traits<Undefined>::name, {}};
const State kAnyText{traits<std::string>::name, {}};
const std::string kObject = traits<Value::Object>::name;

bool isText(const State& state) {
  return state.type == kAnyText.type;
}

/// A member of an object, which is made where there is none.
Value& at(Value& holder, const std::string& name) {
  if (holder.get_if<Value::Object>() == nullptr) holder.emplace<Value::Object>();
  return (*holder.get_if<Value::Object>())[name];
}

void append(Value& holder, const std::string& name, Value element) {
  Value& array = at(holder, name);
  if (array.get_if<Value::Array>() == nullptr) array.emplace<Value::Array>();
  auto& elements = *array.get_if<Value::Array>();
  if (std::find(elements.begin(), elements.end(), element) == elements.end()) {
    elements.push_back(std::move(element));
  }
}

bool isEmpty(const Value& schema) {
  return schema == Value(Value::Object());
}

Steps stepsOf(std::string_view pattern) {
  Steps steps;
  for (const std::string_view token : reference_host::json::tokensOf(pattern)) {
    steps.emplace_back(token);
  }
  return steps;
}

/// The name that a step of a pattern stands for.
std::string nameOf(const std::string& step) {
  return step == "~2" ? kElement : reference_host::json::nameOf(step);
}

/// The name of a type in a schema.
const char* schemaType(const std::string& type) {
  if (type == traits<bool>::name) return "boolean";
  if (type == traits<double>::name) return "number";
  if (type == traits<std::string>::name) return "string";
  if (type == traits<Value::Array>::name) return "array";
  if (type == traits<Null>::name) return "null";
  return "object";
}

Value oneOrAll(Value::Array values) {
  if (values.size() == 1) return std::move(values.front());
  return values;
}

Value allOf(Value::Array schemas) {
  if (schemas.size() == 1) return std::move(schemas.front());
  return Value::Object{{"allOf", std::move(schemas)}};
}

Value negated(Value schema) {
  return Value::Object{{"not", std::move(schema)}};
}

Value reference(const std::string& definition) {
  std::string pointer;
  reference_host::json::appendToken(pointer, definition);
  std::string uri = "#/$defs";
  constexpr std::string_view kPlain =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-._~/$";
  for (const char character : pointer) {
    if (kPlain.find(character) != std::string_view::npos) {
      uri += character;
      continue;
    }
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    const auto byte = static_cast<unsigned char>(character);
    (uri += '%') += kDigits[byte / 16U];
    uri += kDigits[byte % 16U];
  }
  return Value::Object{{"$ref", uri}};
}

/// The schema of values that are in one of the states.
/// @param every all states of the place.
Value holding(const States& states, const States& every) {
  Value::Array types;
  Value::Array words;       // that count although other texts do not
  Value::Array otherWords;  // that do not count although other texts do
  const bool anyText = states.count(kAnyText) != 0;
  std::size_t allTypes = 0;
  for (const State& state : every) {
    if (state == kAbsent) continue;
    const bool is = states.count(state) != 0;
    if (state.word.empty()) {
      ++allTypes;
      if (is) types.emplace_back(schemaType(state.type));
    } else if (is != anyText) {
      (is ? words : otherWords).emplace_back(state.word);
    }
  }
  if (types.empty() && words.empty()) return negated(Value::Object());
  Value schema = Value::Object();
  if (!types.empty() && types.size() != allTypes) at(schema, "type") = oneOrAll(std::move(types));
  if (!otherWords.empty()) at(schema, "not") = Value::Object{{"enum", std::move(otherWords)}};
  if (words.empty()) return schema;
  Value ofWords = words.size() == 1 ? Value(Value::Object{{"const", words.front()}})
                                    : Value(Value::Object{{"enum", std::move(words)}});
  if (isEmpty(schema)) return ofWords;
  return Value::Object{{"anyOf", Value::Array{std::move(ofWords), std::move(schema)}}};
}

/// The schema of objects in which something that meets a schema stands at the end of the steps.
Value having(const Steps& steps, Value schema) {
  for (std::size_t left = steps.size(); left-- > 0;) {
    const std::string name = nameOf(steps[left]);
    Value holder = Value::Object{{"required", Value::Array{name}}};
    if (!isEmpty(schema)) at(holder, "properties") = Value::Object{{name, std::move(schema)}};
    // The outermost is an object wherever this is asked.
    if (left != 0) at(holder, "type") = "object";
    schema = std::move(holder);
  }
  return schema;
}

/// The schema of objects in which a place is in one of the states.
Value wherePlaceIs(const Steps& steps, const States& states, const States& every) {
  if (states.count(kAbsent) == 0) return having(steps, holding(states, every));
  States others;
  std::set_difference(every.begin(), every.end(), states.begin(), states.end(),
                      std::inserter(others, others.end()));
  if (others.empty()) return Value::Object();
  return negated(having(steps, holding(others, every)));
}

/// The schema of what stands at the end of the steps, as part of another one.
Value& inside(Value& schema, const Steps& steps) {
  Value* place = &schema;
  for (const std::string& step : steps) {
    place = step == kElement ? &at(*place, "items") : &at(at(*place, "properties"), nameOf(step));
  }
  if (place->get_if<Value::Object>() == nullptr) place->emplace<Value::Object>();
  return *place;
}

/// Lets a place hold the states alone.
void restrict(Value& schema, const Steps& steps, const States& states, const States& every) {
  if (states.count(kAbsent) == 0 && steps.back() != kElement) {
    append(inside(schema, {steps.begin(), steps.end() - 1}), "required", nameOf(steps.back()));
  }
  const Value held = holding(states, every);
  if (isEmpty(held)) return;
  Value& place = inside(schema, steps);
  for (const auto& [keyword, value] : *held.get_if<Value::Object>()) at(place, keyword) = value;
}

std::string capitalised(std::string text) {
  if (!text.empty() && text.front() >= 'a' && text.front() <= 'z') {
    text.front() = static_cast<char>(text.front() - 'a' + 'A');
  }
  return text;
}

/// Writes the schema of one kind of object.
class KindSchema {
 public:
  KindSchema(const Knowledge& knowledge, const Recognition& recognition, Strictness strictness)
      : words_(knowledge.words()),
        recognition_(recognition),
        kind_(knowledge.kindOf(*recognition.builder, recognition.sample())),
        rules_(learnRules(knowledge, recognition)),
        strictness_(strictness),
        name_(reference_host::diagnosis::nameOfObject(recognition.builder, recognition.sample())) {}

  Value write() {
    at(schema_, "title") = capitalised(name_);
    at(schema_, "description") = "Built by " + recognition_.builder->name() + '.';
    for (const auto& [pattern, known] : kind_.places) describe(pattern, known.wanted);
    at(inside(schema_, {"className"}), "const") = recognition_.className;
    if (recognition_.type) at(inside(schema_, {"context", "type"}), "const") = *recognition_.type;
    for (const auto& [pattern, rules] : rules_) {
      for (const Rule& rule : rules) {
        if (rule.conditions.empty()) {
          restrict(schema_, stepsOf(pattern), rule.allowed, statesAt(pattern));
        } else {
          addConditional(pattern, rule);
        }
      }
    }
    for (auto& [holder, byCondition] : conditional_) {
      for (auto& [text, rule] : byCondition) append(inside(schema_, holder), "allOf", rule);
    }
    for (const auto& [pattern, known] : kind_.places) suggestWords(pattern);
    if (strictness_ == Strictness::kStrict) {
      std::set<std::string> holders;
      for (const auto& [pattern, known] : kind_.places) {
        holders.insert(pattern.substr(0, pattern.rfind('/')));
      }
      for (const std::string& holder : holders) close(holder);
    }
    return std::move(schema_);
  }

 private:
  States statesAt(const std::string& pattern) const {
    return reference_host::diagnosis::statesOf(pattern, words_);
  }

  void describe(const std::string& pattern, const std::string& wanted) {
    std::string text(proseFor(pattern));
    if (!text.empty()) text += ' ';
    text += "Read by the builder of the " + name_;
    text += wanted.empty() ? "." : ": " + reference_host::diagnosis::wantedWords(wanted) + '.';
    at(inside(schema_, stepsOf(pattern)), "description") = text;
  }

  /// Adds a rule where the place and all that it depends on are in reach.
  void addConditional(const std::string& pattern, const Rule& rule) {
    const Steps place = stepsOf(pattern);
    Steps holder(place.begin(), place.end() - 1);
    for (const Condition& condition : rule.conditions) {
      const Steps steps = stepsOf(condition.place);
      const auto end = std::mismatch(holder.begin(), holder.end(), steps.begin(), steps.end() - 1);
      holder.erase(end.first, holder.end());
    }
    const auto below = [&](const Steps& steps) {
      return Steps(steps.begin() + static_cast<std::ptrdiff_t>(holder.size()), steps.end());
    };
    Value::Array tests;
    for (const Condition& condition : rule.conditions) {
      if (!isImplied(condition, rule)) {
        tests.push_back(testOf(condition, below(stepsOf(condition.place))));
      }
    }
    Value test = allOf(std::move(tests));
    Value& conditional = conditional_[holder][asText(test)];
    at(conditional, "if") = std::move(test);
    restrict(at(conditional, "then"), below(place), rule.allowed, statesAt(pattern));
  }

  /// The shortest test: it may be met or not by states that the place must not be in anyway.
  Value testOf(const Condition& condition, const Steps& steps) const {
    const States every = statesAt(condition.place);
    States least = condition.states;
    States most = condition.states;
    const auto rules = rules_.find(condition.place);
    if (rules != rules_.end() && rules->second.front().conditions.empty()) {
      for (const State& state : every) {
        if (rules->second.front().allowed.count(state) != 0) continue;
        least.erase(state);
        most.insert(state);
      }
    }
    Value shortest;
    std::size_t length = std::string::npos;
    for (const States* states : std::array<const States*, 3>{&condition.states, &most, &least}) {
      Value test = wherePlaceIs(steps, *states, every);
      const std::size_t its = asText(test).size();
      if (its >= length) continue;
      length = its;
      shortest = std::move(test);
    }
    return shortest;
  }

  static std::string asText(const Value& value) {
    std::string text;
    reference_host::json::JsonWriter(text).json(value);
    return text;
  }

  /// Whether another condition can be met only where this one is.
  static bool isImplied(const Condition& condition, const Rule& rule) {
    if (condition.states != States{{kObject, {}}}) return false;
    return std::any_of(rule.conditions.begin(), rule.conditions.end(), [&](const Condition& other) {
      return other.states.count(kAbsent) == 0 &&
             other.place.compare(0, condition.place.size() + 1, condition.place + '/') == 0;
    });
  }

  /// Offers the words that make a difference at a place, without refusing others.
  void suggestWords(const std::string& pattern) {
    std::set<std::string> found;
    for (const auto& [place, rules] : rules_) {
      for (const Rule& rule : rules) {
        for (const Condition& condition : rule.conditions) {
          if (condition.place != pattern) continue;
          const bool anyText = condition.states.count(kAnyText) != 0;
          for (const State& state : statesAt(pattern)) {
            if (!state.word.empty() && (condition.states.count(state) != 0) != anyText) {
              found.insert(state.word);
            }
          }
        }
      }
    }
    if (found.empty()) return;
    Value& place = inside(schema_, stepsOf(pattern));
    at(place, "anyOf") = Value::Array{
        Value::Object{{"enum", Value::Array(found.begin(), found.end())}}, Value::Object()};
  }

  /// Refuses members that are not read.
  void close(const std::string& pattern) {
    if (kind_.membersOf(pattern).empty()) return;
    at(inside(schema_, stepsOf(pattern)), "additionalProperties") = false;
  }

  const std::vector<std::string>& words_;
  const Recognition& recognition_;
  const Kind& kind_;
  Rules rules_;
  Strictness strictness_;
  std::string name_;
  Value schema_;
  std::map<Steps, std::map<std::string, Value>> conditional_;  // by holder and condition
};

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
    define("members") = Value::Object{{"additionalProperties", reference("value")}};
    writeObject();
    at(schema_, "$schema") = "https://json-schema.org/draft/2020-12/schema";
    at(schema_, "title") = "Documents for " + bundle;
    at(schema_, "description") =
        strictness_ == Strictness::kStrict
            ? "Documents that are built without an error and hold nothing unknown."
            : "Documents that are built without an error.";
    at(schema_, "$ref") = "#/$defs/value";
    return std::move(schema_);
  }

 private:
  Value& define(const std::string& name) { return at(at(schema_, "$defs"), name); }

  /// What becomes of an object; a strict schema refuses what says that it is something and is not
  /// known.
  Fate::Kind kindOf(const State& className, const State& type, const Fate& fate) const {
    const bool unknown = fate.kind == Fate::Kind::kWalked && strictness_ == Strictness::kStrict &&
                         (isText(className) || isText(type));
    return unknown ? Fate::Kind::kError : fate.kind;
  }

  void writeObject() {
    Value object = Value::Object();
    States allowed;
    States walked;
    Value::Array names;
    for (const ClassFate& fate : fates_) {
      const State& className = fate.className;
      const Fate::Kind kind = kindOf(className, kAbsent, fate.fates.front().second);
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
      define(name) = KindSchema(knowledge_, recognition, strictness_).write();
    }
    return reference(name);
  }

  /// Objects of a class that says not enough.
  Value classReference(const ClassFate& fate) {
    const std::string definition =
        "any." + (fate.className.word.empty() ? fate.className.type : fate.className.word);
    Value schema = Value::Object();
    States contexts;
    States types;
    Value::Array typeNames;
    std::map<std::string, std::pair<Value, Places>> outcomes;
    for (const auto& [states, outcome] : fate.fates) {
      const auto& [context, type] = states;
      const Fate::Kind kind = kindOf(kAbsent, type, outcome);
      if (kind == Fate::Kind::kError) continue;
      contexts.insert(context);
      if (context.type == kObject) types.insert(type);
      Value then = reference("members");
      if (kind == Fate::Kind::kClaimed) {
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
