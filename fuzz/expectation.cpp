#include "fuzz/expectation.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "reference_host/json/parse.hpp"
#include "reference_host/json/text_writer.hpp"

namespace fuzz {

namespace {

using foundation::json::Value;
using Array = Value::Array;
using Object = Value::Object;

/// A read that the contract refuses.
struct Refusal {
  std::string text;
};

const char* nameOfHeld(const Value& value) {
  if (value.get_if<foundation::json::Null>() != nullptr) return "null";
  if (value.get_if<bool>() != nullptr) return "bool";
  if (value.get_if<double>() != nullptr) return "double";
  if (value.get_if<std::string>() != nullptr) return "string";
  if (value.get_if<Array>() != nullptr) return "array";
  if (value.get_if<Object>() != nullptr) return "object";
  if (value.get_if<float>() != nullptr) return "float";
  if (value.get_if<std::int64_t>() != nullptr) return "int64";
  if (value.get_if<std::uint64_t>() != nullptr) return "uint64";
  return "undefined";
}

template <typename T>
const T& read(const Value& value, const char* requested) {
  if (const T* held = value.get_if<T>()) return *held;
  throw Refusal{std::string("invalid conversion: ") + nameOfHeld(value) + " to " + requested};
}

const std::string& readText(const Value& value) {
  return read<std::string>(value, "string");
}
double readNumber(const Value& value) {
  return read<double>(value, "double");
}
const Array& readArray(const Value& value) {
  return read<Array>(value, "array");
}

const Value* memberOf(const Value& value, const std::string& key) {
  const auto* members = value.get_if<Object>();
  if (members == nullptr) return nullptr;
  const auto member = members->find(key);
  return member == members->end() ? nullptr : &member->second;
}

const Value& memberOrUndefined(const Value& value, const std::string& key) {
  static const Value undefined;
  const Value* member = memberOf(value, key);
  return member != nullptr ? *member : undefined;
}

/// A member that has to be there, as the host answers for one that is not: it asks its holder to be
/// an object, which only an Undefined value can become.
const Value& requiredMember(const Value& holder, const std::string& key) {
  if (holder.get_if<foundation::json::Undefined>() == nullptr) read<Object>(holder, "object");
  return memberOrUndefined(holder, key);
}

Value column(double number) {
  const double whole = std::trunc(number);
  if (whole >= 0 && whole < std::ldexp(1.0, 64)) return static_cast<std::uint64_t>(whole);
  if (whole < 0 && whole >= -std::ldexp(1.0, 63)) {
    return ~static_cast<std::uint64_t>(-whole) + 1;
  }
  return std::uint64_t{0x8000000000000000};
}

/// The low 16 bits of the number without its fraction; 0 for one that 32 bits do not hold.
Value lineCount(double number) {
  const double whole = std::trunc(number);
  if (!(whole >= -2147483648.0 && whole <= 2147483647.0)) return std::uint64_t{0};
  const double low = std::fmod(whole, 65536.0);
  return static_cast<std::uint64_t>(low < 0 ? low + 65536.0 : low);
}

Object element(const std::string& className) {
  return {{"class", className}};
}

bool recognizes(const Kind& kind, const Value& json, std::vector<std::string>& records) {
  records.push_back(kind.asked);
  if (kind.rule == Rule::kHostClassName) {
    const auto* className = memberOrUndefined(json, "className").get_if<std::string>();
    return className != nullptr && *className == kind.word;
  }
  if (json.get_if<Object>() == nullptr) {
    records.push_back("Incoming JSON was not an Object");
    return false;
  }
  const Value* className = memberOf(json, "className");
  if (className == nullptr) return false;
  const bool isGeneric = readText(*className) == kGenericControl;
  if (kind.rule == Rule::kClassName || !isGeneric) {
    return kind.rule != Rule::kTypeWord && readText(*className) == kind.word;
  }
  const Value& context = memberOrUndefined(json, "context");
  read<Object>(context, "object");
  return readText(memberOrUndefined(context, "type")) == kind.word;
}

/// A build, key by key.
class Build {
 public:
  Build(const Kind& kind, const Value& json) : kind_(kind), json_(json) {}

  Outcome run() {
    Outcome outcome;
    record(kind_.start);
    try {
      if (kind_.shape == Shape::kHeader) {
        buildHeader();
      } else if (kind_.shape == Shape::kTask) {
        buildTask();
      } else {
        buildControl();
      }
    } catch (const Refusal& refusal) {
      outcome.error = refusal.text;
    }
    outcome.records = std::move(records_);
    outcome.roots = roots();
    return outcome;
  }

 private:
  void record(const std::string& text) {
    if (!text.empty()) records_.push_back(text);
  }
  void append(std::vector<std::string> records) {
    for (std::string& text : records) records_.push_back(std::move(text));
  }

  void buildControl() {
    record(foundation::json::pretty_print(json_));
    hasPosition_ = true;
    for (const char* key : {"startColumn", "endColumn"}) {
      if (const Value* found = memberOf(json_, key)) position_[key] = column(readNumber(*found));
    }
    const Value& id = memberOrUndefined(json_, "controlId");
    if (id.get_if<std::string>() != nullptr) node_["id"] = id;
    hasRecord_ = true;

    const Value* context = memberOf(json_, "context");
    const Value* data = context != nullptr ? memberOf(*context, "data") : nullptr;
    if (kind_.shape == Shape::kGuarded) {
      if (context != nullptr) record("Found the context property");
      if (data == nullptr) return;
      record("Found the context.data property");
    }
    static const Value nothing;
    const Value& fields = data != nullptr ? *data : nothing;
    apply(fields, {"executionModel", Type::kText, "executionModel",
                   "Found the executionModel property", "Set the executionModel property"});
    apply(fields,
          {"text", Type::kText, "label", "Found the label property", "Set the label property"});
    apply(json_, {"text", Type::kText, "code", "Found the code property", "Set the code property"});
    if (kind_.shape != Shape::kGuarded) requiredMember(memberOrUndefined(json_, "context"), "data");
    for (const Field& field : kind_.fields) apply(fields, field);
  }

  void buildTask() {
    node_["id"] = "";
    if (const Value* id = memberOf(json_, "instanceId")) {
      node_.erase("id");
      record("Setting the instanceId property");
      node_["id"] = readText(*id);
    }
    for (const Field& field : kind_.fields) {
      record_[field.property] = field.type == Type::kText ? Value("") : Value(0.0);
      apply(json_, field);
    }
    hasRecord_ = true;
    record("Finished building a LumoAppIntegratedNode");
  }

  void buildHeader() {
    record("Building the anchorId for the LumoAppLineNode");
    std::string anchor;
    if (const auto* given = memberOrUndefined(json_, "anchorId").get_if<std::string>()) {
      anchor = given->compare(0, 2, "M_") == 0 ? *given : "M_" + *given;
    }
    node_["anchorId"] = anchor;
    const auto child = std::find_if(kinds().begin(), kinds().end(),
                                    [](const Kind& kind) { return kind.shape == Shape::kTask; });
    Array children;
    for (const Value& each : readArray(memberOrUndefined(json_, "children"))) {
      if (!recognizes(*child, each, records_)) continue;
      Outcome outcome = Build(*child, each).run();
      append(std::move(outcome.records));
      if (!outcome.error.empty()) {
        strays_.push_back(outcome.roots.front());
        throw Refusal{outcome.error};
      }
      children.push_back(outcome.roots.front());
      node_["children"] = children;
    }
    record("Finished building the LumoAppLineNode");
  }

  void apply(const Value& fields, const Field& field) {
    const Value* found = memberOf(fields, field.key);
    if (found == nullptr && !field.required) return;
    record(field.found);
    const Value& value = found != nullptr ? *found : requiredMember(fields, field.key);
    switch (field.type) {
      case Type::kText:
        record_[field.property] = readText(value);
        break;
      case Type::kNumber:
        record_[field.property] = readNumber(value);
        break;
      case Type::kFlag:
        record_[field.property] = read<bool>(value, "bool");
        break;
      case Type::kLineCount:
        record_[field.property] = lineCount(readNumber(value));
        break;
      case Type::kItems:
        applyItems(value);
        break;
      case Type::kItemLabels:
        applyItemLabels(value);
        break;
      case Type::kDefault:
        applyDefault(fields, value);
        break;
    }
    record(field.set);
  }

  void applyItems(const Value& value) {
    record("Got items ka array");
    Array items;
    for (const Value& entry : readArray(value)) {
      record(foundation::json::pretty_print(entry));
      Object& item = addStray("ComboboxItem");
      item["label"] = readText(memberOrUndefined(entry, "label"));
      item["item"] = readText(memberOrUndefined(entry, "value"));
      items.push_back(takeStray());
      record_["items"] = items;
    }
  }

  void applyItemLabels(const Value& value) {
    Array labels;
    for (const Value& entry : readArray(value)) {
      Object& label = addStray("ComboboxItemLabel");
      label["label"] = readText(entry);
      labels.push_back(takeStray());
      record_["itemLabels"] = labels;
    }
  }

  void applyDefault(const Value& fields, const Value& value) {
    const auto type = record_.find("valueType");
    const bool isNumber = type != record_.end() && type->second == Value("Double");
    Object& data = addStray(isNumber ? "DoubleDefaultValueData" : "StringDefaultValueData");
    if (!isNumber) {
      data["defaultValue"] = readText(value);
    } else if (value.get_if<double>() != nullptr) {
      data["defaultValue"] = value;
    }
    data["defaultLinkedVariable"] =
        readText(memberOrUndefined(fields, "defaultValueLinkedVariable"));
    record_["defaultValueData"] = takeStray();
  }

  Object& addStray(const std::string& className) {
    strays_.emplace_back(element(recordClass(className)));
    return *strays_.back().get_if<Object>();
  }
  Value takeStray() {
    Value stray = std::move(strays_.back());
    strays_.pop_back();
    return stray;
  }

  /// What the exporter writes of the node and the strays, read back.
  Array roots() const {
    Object node = node_;
    node["class"] = nodeClass(kind_.node);
    if (hasPosition_) {
      Object position = position_;
      position["class"] = nodeClass("LumoControlPosition");
      node["position"] = position;
    }
    if (hasRecord_) {
      Object record = record_;
      record["class"] = recordClass(kind_.record);
      node[kind_.slot] = record;
    }
    Array all = {node};
    all.insert(all.end(), strays_.begin(), strays_.end());
    std::string text;
    reference_host::json::JsonWriter(text).json(all);
    return *reference_host::json::parse(text).get_if<Array>();
  }

  const Kind& kind_;
  const Value& json_;
  std::vector<std::string> records_;
  Object node_;
  Object position_;
  Object record_;
  bool hasPosition_ = false;
  bool hasRecord_ = false;
  Array strays_;  // made, and contained in nothing yet
};

}  // namespace

Outcome expectedAnswer(const Kind& kind, const Value& json) {
  Outcome outcome;
  try {
    outcome.claims = recognizes(kind, json, outcome.records);
  } catch (const Refusal& refusal) {
    outcome.error = refusal.text;
  }
  return outcome;
}

Outcome expectedBuild(const Kind& kind, const Value& json) {
  return Build(kind, json).run();
}

}  // namespace fuzz
