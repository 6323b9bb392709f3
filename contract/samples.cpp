#include "contract/samples.hpp"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <limits>
#include <set>
#include <utility>

#include "reference_host/json/parse.hpp"

namespace contract {

namespace {

using foundation::json::Value;
using Array = Value::Array;
using Object = Value::Object;

/// The object that holds a kind's fields.
Object& dataOf(const Kind& kind, Value& object) {
  Object& members = *object.get_if<Object>();
  if (!isControl(kind)) return members;
  return *(*members["context"].get_if<Object>())["data"].get_if<Object>();
}

Object& placeOf(const Kind& kind, const Field& field, Value& object) {
  return field.place == Field::Place::kData ? dataOf(kind, object) : *object.get_if<Object>();
}

/// A value that a field takes. The default value's form is the numeric one if that is asked for.
Value valueFor(const Field& field, bool numeric) {
  switch (field.type) {
    case Type::kNumber:
      return 2.5;
    case Type::kColumn:
    case Type::kLineCount:
      return field.key == "startColumn" ? 3.0 : 12.0;
    case Type::kFlag:
      return true;
    case Type::kValueType:
      return numeric ? "Double" : "String";
    case Type::kDefault:
      if (numeric) return -0.125;
      break;
    case Type::kItems:
      return Array{Object{{"label", "One"}, {"value", "the value of the first of the items"}},
                   Object{{"label", "the label of the second of the items"}, {"value", "b"}}};
    case Type::kItemLabels:
      return Array{"first", "a second label of more than a few words", "third"};
    case Type::kChildren:
      return Array{wholeObjects(taskKind()).front().json, Object{}, emptyObject(taskKind())};
    case Type::kText:
    case Type::kTextOrNothing:
    case Type::kAnchor:
    case Type::kDefaultLinked:
      break;
  }
  return "a value of " + field.key + " in more than a few words";
}

Value wholeObject(const Kind& kind, bool numeric) {
  Value object = emptyObject(kind);
  for (const Field& field : kind.fields) {
    placeOf(kind, field, object)[field.key] = valueFor(field, numeric);
  }
  return object;
}

bool hasForms(const Kind& kind) {
  return std::any_of(kind.fields.begin(), kind.fields.end(),
                     [](const Field& field) { return field.type == Type::kDefault; });
}

/// Values at the edges of a type: right ones, and lists with wrong entries.
std::vector<Value> edgesOf(Type type) {
  using Limits = std::numeric_limits<double>;
  static const std::vector<Value> texts = {
      "",  "Größe \xF0\x9F\x9A\x80", " a ", std::string("a\0b", 3), "M_", "M", "M_a", "m_a", "xM_",
      "2", std::string(1000, 'x')};
  static const std::vector<Value> numbers = {0.0,
                                             -0.0,
                                             1.0,
                                             -1.0,
                                             0.1,
                                             -7.25,
                                             3.9,
                                             -0.9,
                                             -1.9,
                                             12.9,
                                             32768.0,
                                             65535.,
                                             65535.9,
                                             65536.0,
                                             70000.0,
                                             -65536.0,
                                             2147483647.5,
                                             2147483648.0,
                                             -2147483648.5,
                                             -2147483649.0,
                                             1e10,
                                             -1e20,
                                             9007199254740991.0,
                                             9223372036854774784.0,
                                             9223372036854775808.0,
                                             18446744073709549568.0,
                                             18446744073709551616.0,
                                             -9223372036854775808.0,
                                             -9223372036854777856.0,
                                             Limits::max(),
                                             Limits::lowest(),
                                             Limits::denorm_min(),
                                             Limits::infinity(),
                                             -Limits::infinity(),
                                             Limits::quiet_NaN()};
  const auto item = [](const Value& label, const Value& value) {
    return Value(Object{{"label", label}, {"value", value}});
  };
  std::vector<Value> edges;
  switch (type) {
    case Type::kNumber:
    case Type::kColumn:
    case Type::kLineCount:
      return numbers;
    case Type::kFlag:
      return {false, true};
    case Type::kValueType:
      edges = texts;
      for (const char* word : {"Double", "double", "DOUBLE", "Doubl", "Double ", " Double",
                               "Doubles", "Number", "String"}) {
        edges.emplace_back(word);
      }
      edges.emplace_back(std::string("Double\0", 7));
      return edges;
    case Type::kDefault:
      edges = texts;
      edges.insert(edges.end(), numbers.begin(), numbers.end());
      return edges;
    case Type::kItems:
      edges = {Array{},
               Array{item("Z", "1"), item("A", "2")},
               Array{item("A", "x"), item("A", "x")},
               Array{item("", "")},
               Array{Object{{"label", "A"}}},
               Array{Object{{"value", "A"}}},
               Array{Object{{"item", 7.0}, {"label", "A"}, {"value", "x"}}},
               Array{item("A", "x"), Object{{"label", "B"}}, item("C", "z")}};
      for (const Alternative& each : alternatives()) {
        edges.insert(edges.end(), {Array{each.value}, Array{item(each.value, "x")},
                                   Array{item("A", each.value)}});
      }
      return edges;
    case Type::kItemLabels:
      edges = {Array{}, Array{"c", "a", "b"}, Array{"a", "a"}};
      for (const Alternative& each : alternatives()) {
        edges.insert(edges.end(), {Array{each.value}, Array{"a", each.value, "c"}});
      }
      return edges;
    case Type::kChildren: {
      const Value task = wholeObjects(taskKind()).front().json;
      const Value failing = failingObjects(taskKind()).front().json;
      edges = {Array{}, Array{task, task}, Array{task, failing, task},
               Array{Object{{"className", 7.0}}, task}};
      for (const Kind& kind : kinds()) edges.push_back(Array{task, emptyObject(kind)});
      for (const Alternative& each : alternatives()) edges.push_back(Array{each.value, task});
      return edges;
    }
    case Type::kText:
    case Type::kTextOrNothing:
    case Type::kAnchor:
    case Type::kDefaultLinked:
      break;
  }
  return texts;
}

/// Collects the samples of one kind.
class Collector {
 public:
  explicit Collector(const Kind& kind) : kind_(kind) {}

  std::vector<Sample> collect() {
    add("empty", emptyObject(kind_));
    for (const Sample& whole : wholeObjects(kind_)) {
      samples_.push_back(whole);
      for (const Field& field : kind_.fields) addChangesOf(whole, field);
      if (isControl(kind_)) addContexts(whole.json);
    }
    for (const Field& field : kind_.fields) {
      Value alone = emptyObject(kind_);
      placeOf(kind_, field, alone)[field.key] = valueFor(field, false);
      add("alone: " + field.key, alone);
    }
    if (isControl(kind_)) addContexts(emptyObject(kind_));
    addUnknownKeys();
    addMisplacedKeys();
    addWords();
    return std::move(samples_);
  }

 private:
  void add(const std::string& description, Value json) {
    samples_.push_back({description, std::move(json)});
  }

  void addChangesOf(const Sample& whole, const Field& field) {
    const auto addWith = [&](const std::string& description, const Value& value) {
      Value changed = whole.json;
      placeOf(kind_, field, changed)[field.key] = value;
      add(whole.description + ", " + field.key + " " + description, changed);
    };
    Value without = whole.json;
    placeOf(kind_, field, without).erase(field.key);
    add(whole.description + " without " + field.key, without);
    for (const Alternative& each : alternatives()) addWith("of type " + each.name, each.value);
    std::size_t number = 0;
    for (const Value& edge : edgesOf(field.type)) {
      addWith("at an edge, " + std::to_string(++number), edge);
    }
  }

  void addContexts(const Value& object) {
    const auto addChanged = [&](const std::string& description,
                                const std::function<void(Object&)>& change) {
      Value changed = object;
      change(*changed.get_if<Object>());
      add(description, changed);
    };
    addChanged("no context", [](Object& members) { members.erase("context"); });
    addChanged("no data",
               [](Object& members) { members["context"].get_if<Object>()->erase("data"); });
    for (const Alternative& other : alternatives()) {
      addChanged("context of type " + other.name,
                 [&](Object& members) { members["context"] = other.value; });
      addChanged("data of type " + other.name,
                 [&](Object& members) { members["context"]["data"] = other.value; });
    }
  }

  /// In every place what is no key of the kind's there: other kinds' keys, the model's names for
  /// properties, and the words of the log.
  void addUnknownKeys() {
    Value object = wholeObjects(kind_).front().json;
    std::set<std::string> names = {"label", "code", "min", "max", "id", "position", "unknown"};
    for (const Kind& kind : kinds()) {
      for (const Field& field : kind.fields) names.insert({field.key, field.property});
    }
    std::vector<Object*> places = {object.get_if<Object>(), &dataOf(kind_, object)};
    if (isControl(kind_)) places.push_back((*places.front())["context"].get_if<Object>());
    for (Object* place : places) {
      for (const std::string& name : names) place->emplace(name, 1.0F);
    }
    add("unknown keys", object);
  }

  void addMisplacedKeys() {
    if (!isControl(kind_)) return;
    Value object = emptyObject(kind_);
    Object& members = *object.get_if<Object>();
    for (const Field& field : kind_.fields) {
      (*members["context"].get_if<Object>())[field.key] = valueFor(field, false);
      if (field.key == "text") continue;  // a key of both places
      Object& wrong = field.place == Field::Place::kData ? members : dataOf(kind_, object);
      wrong[field.key] = valueFor(field, false);
    }
    add("keys in the wrong place", object);
  }

  /// What is nearly the kind's word, and the word in the place of the other rule.
  void addWords() {
    std::string otherCase = kind_.word;
    otherCase.front() = static_cast<char>(otherCase.front() ^ 0x20);
    for (const std::string& word :
         {kind_.word, otherCase, kind_.word + "x", kind_.word + " ", " " + kind_.word,
          kind_.word.substr(1), kind_.word.substr(0, kind_.word.size() - 1),
          kind_.word + std::string(1, '\0')}) {
      add("class name: " + word, Object{{"className", word}, {"context", 7.0}});
      add("type: " + word,
          Object{{"className", kGenericControl}, {"context", Object{{"type", word}}}});
      add("another class name, type: " + word,
          Object{{"className", "ParagraphNode"}, {"context", Object{{"type", word}}}});
    }
    add("key in another case", Object{{"classname", kind_.word}});
    add("no class name", Object{{"context", Object{{"type", kind_.word}}}});
    // Found behind other keys, wherever they stand in the order.
    add("behind other keys",
        Object{{"a", "b"}, {"b", "c"}, {"c", "d"}, {"cl", Object{}}, {"className", kind_.word}});
  }

  const Kind& kind_;
  std::vector<Sample> samples_;
};

}  // namespace

const std::vector<Alternative>& alternatives() {
  static const std::vector<Alternative> all = {
      {"undefined", Value()},
      {"null", Value(foundation::json::Null())},
      {"bool", Value(true)},
      {"double", Value(1.0)},
      {"string", Value("true")},
      {"array", Value(Array{Value("1")})},
      {"object", Value(Object{{"0", Value("1")}})},
      {"float", Value(1.0F)},
      {"int64", Value(std::int64_t{1})},
      {"uint64", Value(std::uint64_t{1})},
  };
  return all;
}

std::vector<Alternative> alternativesExcept(const std::string& name) {
  std::vector<Alternative> others;
  for (const Alternative& alternative : alternatives()) {
    if (alternative.name != name) others.push_back(alternative);
  }
  return others;
}

Value emptyObject(const Kind& kind) {
  Object members;
  members["className"] = isGeneric(kind) ? kGenericControl : kind.word;
  if (isControl(kind)) {
    Object context{{"data", Object()}};
    if (isGeneric(kind)) context["type"] = kind.word;
    members["context"] = context;
  }
  return members;
}

Value objectWith(const Kind& kind, const std::string& data) {
  Value object = emptyObject(kind);
  object["context"]["data"] = reference_host::json::parse(data);
  return object;
}

std::vector<Sample> wholeObjects(const Kind& kind) {
  std::vector<Sample> whole = {{kind.name, wholeObject(kind, false)}};
  if (hasForms(kind)) whole.push_back({kind.name + " with a number", wholeObject(kind, true)});
  return whole;
}

std::vector<Sample> failingObjects(const Kind& kind) {
  std::vector<Sample> failing = wholeObjects(kind);
  for (Sample& sample : failing) {
    sample.description += " failing";
    Value& last = placeOf(kind, kind.fields.back(), sample.json)[kind.fields.back().key];
    if (kind.shape != Shape::kHeader) {
      last = foundation::json::Null();
      continue;
    }
    last.get_if<Array>()->back() = failingObjects(taskKind()).front().json;
  }
  return failing;
}

std::vector<Sample> samplesOf(const Kind& kind) {
  return Collector(kind).collect();
}

std::vector<Sample> strangers() {
  std::vector<Sample> samples = {
      {"an empty object", Object()},
      {"an object without class name", Object{{"context", Object{{"type", "button"}}}}},
      {"an empty class name", Object{{"className", ""}}},
      {"a longer key", Object{{"className2", "button"}}},
      {"another node", Object{{"className", "ParagraphNode"}, {"context", Object()}}},
      {"a generic control without context", Object{{"className", kGenericControl}}},
      {"a generic control without type",
       Object{{"className", kGenericControl}, {"context", Object()}}},
  };
  for (const Alternative& each : alternatives()) {
    samples.push_back({"no node: " + each.name, each.value});
    samples.push_back({"class name: " + each.name, Object{{"className", each.value}}});
    samples.push_back(
        {"context: " + each.name, Object{{"className", kGenericControl}, {"context", each.value}}});
    samples.push_back({"type: " + each.name, Object{{"className", kGenericControl},
                                                    {"context", Object{{"type", each.value}}}}});
  }
  return samples;
}

}  // namespace contract
