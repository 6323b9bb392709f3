#include "schema_terms.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

#include "reference_host/json/pointer.hpp"

namespace tessel_tool {

using foundation::json::Null;
using foundation::json::traits;
using foundation::json::Undefined;
using foundation::json::Value;
using reference_host::diagnosis::State;
using reference_host::diagnosis::States;

const State kAbsent{traits<Undefined>::name, {}};
const State kAnyText{traits<std::string>::name, {}};

namespace {

constexpr const char* kElement = "*";
/// What a fragment of a URI holds as it is.
constexpr std::string_view kPlain =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-._~/$";

bool isEmpty(const Value& schema) {
  return schema == Value(Value::Object());
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

}  // namespace

Steps stepsOf(std::string_view pattern) {
  Steps steps;
  for (const std::string_view token : reference_host::json::tokensOf(pattern)) {
    steps.emplace_back(token);
  }
  return steps;
}

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

Value wherePlaceIs(const Steps& steps, const States& states, const States& every) {
  if (states.count(kAbsent) == 0) return having(steps, holding(states, every));
  States others;
  std::set_difference(every.begin(), every.end(), states.begin(), states.end(),
                      std::inserter(others, others.end()));
  if (others.empty()) return Value::Object();
  return negated(having(steps, holding(others, every)));
}

Value& inside(Value& schema, const Steps& steps) {
  Value* place = &schema;
  for (const std::string& step : steps) {
    place = step == kElement ? &at(*place, "items") : &at(at(*place, "properties"), nameOf(step));
  }
  if (place->get_if<Value::Object>() == nullptr) place->emplace<Value::Object>();
  return *place;
}

void restrict(Value& schema, const Steps& steps, const States& states, const States& every) {
  if (states.count(kAbsent) == 0 && steps.back() != kElement) {
    append(inside(schema, {steps.begin(), steps.end() - 1}), "required", nameOf(steps.back()));
  }
  const Value held = holding(states, every);
  if (isEmpty(held)) return;
  Value& place = inside(schema, steps);
  for (const auto& [keyword, value] : *held.get_if<Value::Object>()) at(place, keyword) = value;
}

}  // namespace tessel_tool
