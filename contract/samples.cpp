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

Object& placeOf(const Kind& kind, const FieldSpec& field, Value& object) {
  return field.place == FieldSpec::Place::kData ? dataOf(kind, object) : *object.get_if<Object>();
}

/// A value that a field takes. The default value's form is the numeric one if that is asked for.
Value valueFor(const FieldSpec& field, bool numeric) {
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
  for (const FieldSpec& field : kind.fields) {
    placeOf(kind, field, object)[field.key] = valueFor(field, numeric);
  }
  return object;
}

bool hasForms(const Kind& kind) {
  return std::any_of(kind.fields.begin(), kind.fields.end(),
                     [](const FieldSpec& field) { return field.type == Type::kDefault; });
}

Array listOf(const std::string& json) {
  return *reference_host::json::parse(json).get_if<Array>();
}

/// Texts at the edges, for the host's anchor as well.
Array edgesOfText() {
  Array edges = listOf(R"(["", "Größe \ud83d\ude80", " a ", "a\u0000b", "M_", "M", "M_a", "m_a",
                           "xM_", "2"])");
  edges.emplace_back(std::string(1000, 'x'));
  return edges;
}

/// Numbers at the edges of 16, 32, 53 and 64 bits.
Array edgesOfNumber() {
  using Limits = std::numeric_limits<double>;
  Array edges = listOf(R"([0, -0, 1, -1, 0.1, -7.25, 3.9, -0.9, -1.9, 12.9,
                           32768, 65535, 65535.9, 65536, 70000, -65536,
                           2147483647.5, 2147483648, -2147483648.5, -2147483649, 1e10, -1e20,
                           9007199254740991, 9223372036854774784, 9223372036854775808,
                           18446744073709549568, 18446744073709551616,
                           -9223372036854775808, -9223372036854777856])");
  edges.insert(edges.end(), {Limits::max(), Limits::lowest(), Limits::denorm_min(),
                             Limits::infinity(), -Limits::infinity(), Limits::quiet_NaN()});
  return edges;
}

/// Values at the edges of a type: right ones, and lists with wrong entries.
Array edgesOf(Type type) {
  Array edges;
  switch (type) {
    case Type::kNumber:
    case Type::kColumn:
    case Type::kLineCount:
      return edgesOfNumber();
    case Type::kFlag:
      return {false, true};
    case Type::kValueType:
      return listOf(R"(["", "Double", "double", "DOUBLE", "Doubl", "Double ", " Double", "Doubles",
                        "Double\u0000", "Number", "String"])");
    case Type::kDefault:
      edges = edgesOfNumber();
      break;
    case Type::kItems:
      edges = listOf(R"([[],
          [{"label":"Z","value":"1"}, {"label":"A","value":"2"}],
          [{"label":"A","value":"x"}, {"label":"A","value":"x"}],
          [{"label":"","value":""}],
          [{"label":"A"}],
          [{"value":"A"}],
          [{"item":7,"label":"A","value":"x"}],
          [{"label":"A","value":"x"}, {"label":"B"}, {"label":"C","value":"z"}]])");
      for (const Sample& each : alternatives()) {
        edges.insert(edges.end(),
                     {Array{each.json}, Array{Object{{"label", each.json}, {"value", "x"}}},
                      Array{Object{{"label", "A"}, {"value", each.json}}}});
      }
      return edges;
    case Type::kItemLabels:
      edges = listOf(R"([[], ["c","a","b"], ["a","a"]])");
      for (const Sample& each : alternatives()) {
        edges.insert(edges.end(), {Array{each.json}, Array{"a", each.json, "c"}});
      }
      return edges;
    case Type::kChildren: {
      const Value task = wholeObjects(taskKind()).front().json;
      const Value failing = failingObjects(taskKind()).front().json;
      edges = {Array{}, Array{task, task}, Array{task, failing, task},
               Array{Object{{"className", 7.0}}, task}};
      for (const Kind& kind : kinds()) edges.push_back(Array{task, emptyObject(kind)});
      for (const Sample& each : alternatives()) edges.push_back(Array{each.json, task});
      return edges;
    }
    case Type::kText:
    case Type::kTextOrNothing:
    case Type::kAnchor:
    case Type::kDefaultLinked:
      break;
  }
  const Array texts = edgesOfText();
  edges.insert(edges.end(), texts.begin(), texts.end());
  return edges;
}

/// Collects the samples of one kind.
class Collector {
 public:
  explicit Collector(const Kind& kind) : kind_(kind) {}

  std::vector<Sample> collect() {
    add("empty", emptyObject(kind_));
    for (const Sample& whole : wholeObjects(kind_)) {
      samples_.push_back(whole);
      for (const FieldSpec& field : kind_.fields) addChangesOf(whole, field);
      if (isControl(kind_)) addContexts(whole.json);
    }
    for (const FieldSpec& field : kind_.fields) {
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

  void addChangesOf(const Sample& whole, const FieldSpec& field) {
    const auto addWith = [&](const std::string& description, const Value& value) {
      Value changed = whole.json;
      placeOf(kind_, field, changed)[field.key] = value;
      add(whole.description + ", " + field.key + " " + description, changed);
    };
    Value without = whole.json;
    placeOf(kind_, field, without).erase(field.key);
    add(whole.description + " without " + field.key, without);
    for (const Sample& each : alternatives()) addWith("of type " + each.description, each.json);
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
    for (const Sample& other : alternatives()) {
      addChanged("context of type " + other.description,
                 [&](Object& members) { members["context"] = other.json; });
      addChanged("data of type " + other.description,
                 [&](Object& members) { members["context"]["data"] = other.json; });
    }
  }

  /// In every place what is no key of the kind's there: other kinds' keys, the model's names for
  /// properties, and the words of the log.
  void addUnknownKeys() {
    Value object = wholeObjects(kind_).front().json;
    std::set<std::string> names = {"label", "code", "min", "max", "id", "position", "unknown"};
    for (const Kind& kind : kinds()) {
      for (const FieldSpec& field : kind.fields) names.insert({field.key, field.property});
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
    for (const FieldSpec& field : kind_.fields) {
      (*members["context"].get_if<Object>())[field.key] = valueFor(field, false);
      if (field.key == "text") continue;  // a key of both places
      Object& wrong = field.place == FieldSpec::Place::kData ? members : dataOf(kind_, object);
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

const std::vector<Sample>& alternatives() {
  static const std::vector<Sample> all = {
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
      {"an empty class name", Object{{"className", ""}}},
      {"a longer key", Object{{"className2", "button"}}},
      {"a generic control without context", Object{{"className", kGenericControl}}},
      {"a generic control without type",
       Object{{"className", kGenericControl}, {"context", Object()}}},
  };
  for (const Sample& each : alternatives()) {
    samples.push_back({"no node: " + each.description, each.json});
    samples.push_back({"class name: " + each.description, Object{{"className", each.json}}});
    samples.push_back({"context: " + each.description,
                       Object{{"className", kGenericControl}, {"context", each.json}}});
    samples.push_back(
        {"type: " + each.description,
         Object{{"className", kGenericControl}, {"context", Object{{"type", each.json}}}}});
  }
  return samples;
}

}  // namespace contract
